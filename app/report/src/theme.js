// Light or dark: as the system has it, until the reader chooses.
import { byId } from './dom.js';

const dark = matchMedia('(prefers-color-scheme: dark)');

// A file that is opened from disk may be refused its memory.
const remembered = () => { try { return localStorage.getItem('theme'); } catch { return null; } };
const remember = theme => { try { localStorage.setItem('theme', theme); } catch { /* then it is not remembered */ } };

export function followTheme(changed) {
  const button = byId('theme');
  let chosen = remembered();
  const apply = () => {
    const theme = chosen ?? (dark.matches ? 'dark' : 'light');
    document.documentElement.dataset.theme = theme;
    button.textContent = theme === 'dark' ? 'Light theme' : 'Dark theme';
    changed();
  };
  button.addEventListener('click', () => {
    chosen = document.documentElement.dataset.theme === 'dark' ? 'light' : 'dark';
    remember(chosen);
    apply();
  });
  dark.addEventListener('change', apply);
  apply();
}
