// Makes dist/report.html, the page that the host program fills with a run, from src/. usage: node build.mjs [FILE]
import { build } from 'esbuild';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = dirname(fileURLToPath(import.meta.url));
const target = process.argv[2] ?? join(here, 'dist', 'report.html');

async function bundled(entry) {
  const made = await build({
    entryPoints: [join(here, 'src', entry)], absWorkingDir: here, bundle: true, minify: true, write: false,
    format: 'iife', target: ['chrome103', 'firefox113', 'safari16.4'], charset: 'ascii', legalComments: 'none',
  });
  return made.outputFiles[0].text.trimEnd();
}

const licence = readFileSync(join(here, 'node_modules', 'three', 'LICENSE'), 'utf8').trim().replace('\u00a9', '(c)');
const template = readFileSync(join(here, 'src', 'page.html'), 'utf8');
const parts = { '/*STYLE*/': await bundled('page.css'), '/*SCRIPT*/': await bundled('main.js'), '/*LICENCE*/': licence };
let text = template;
for (const [mark, part] of Object.entries(parts)) {
  if (text.split(mark).length !== 2) throw new Error(`page.html must have ${mark} once`);
  text = text.split(mark).join(part);
}
// the host cuts the text into literals at any byte
const strange = text.match(/.{0,40}[^\x00-\x7f].{0,40}/);
if (strange) throw new Error(`the page must be ASCII, other characters entities or escapes: ${strange[0]}`);
mkdirSync(dirname(target), { recursive: true });
writeFileSync(target, text);
