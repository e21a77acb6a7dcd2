// Opens pages in a headless Chromium and uses them as a reader would.
// usage: node page_test.mjs FOLDER_OF_PACKAGES FOLDER_OF_PAGES PROGRAM PROJECT_FOLDER PARTS [SCREENSHOTS]
// FOLDER_OF_PAGES as report_pages left it. 77: no browser here.
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { existsSync, mkdirSync, readFileSync, statSync } from 'node:fs';
import { createRequire } from 'node:module';
import { basename, dirname, join, resolve } from 'node:path';
import { pathToFileURL } from 'node:url';
import { inflateSync } from 'node:zlib';

const [packages, pages, program, project, parts, shots] = process.argv.slice(2).map(word => resolve(word));
const browserPath = ['/usr/bin/chromium', '/usr/bin/chromium-browser'].find(existsSync);
if (!browserPath || !existsSync(join(packages, 'node_modules', '.taken'))) {
  console.log(browserPath ? 'skipped: the npm packages are not here' : 'skipped: chromium is not here; scripts/setup report installs it');
  process.exit(77);
}
const { chromium } = createRequire(join(packages, 'package.json'))('playwright-core');
const browser = await chromium.launch({ executablePath: browserPath, args: ['--headless', '--no-sandbox', '--disable-gpu',
  '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync',
  '--use-gl=angle', '--use-angle=swiftshader', '--enable-unsafe-swiftshader'] });

// The rows of an 8-bit PNG without palette, three bytes per pixel.
function pixelsOf(png) {
  const width = png.readUInt32BE(16), height = png.readUInt32BE(20), channels = png[25] === 6 ? 4 : 3, data = [];
  for (let at = 8; at < png.length;) {
    const length = png.readUInt32BE(at);
    if (png.toString('latin1', at + 4, at + 8) === 'IDAT') data.push(png.subarray(at + 8, at + 8 + length));
    at += length + 12;
  }
  const raw = inflateSync(Buffer.concat(data)), row = width * channels, out = Buffer.alloc(row * height), pixels = [];
  for (let y = 0; y < height; ++y)
    for (let x = 0; x < row; ++x) {
      const a = x >= channels ? out[y * row + x - channels] : 0, b = y ? out[(y - 1) * row + x] : 0;
      const c = x >= channels && y ? out[(y - 1) * row + x - channels] : 0, p = a + b - c;
      const paeth = Math.abs(p - a) <= Math.abs(p - b) && Math.abs(p - a) <= Math.abs(p - c) ? a : Math.abs(p - b) <= Math.abs(p - c) ? b : c;
      out[y * row + x] = raw[y * (row + 1) + 1 + x] + [0, a, b, (a + b) >> 1, paeth][raw[y * (row + 1)]];
    }
  for (let k = 0; k < width * height; ++k) pixels.push([...out.subarray(k * channels, k * channels + 3)]);
  return pixels;
}

// A page, open and drawn, that loads nothing else and complains of nothing.
async function opened(file, theme = 'light') {
  const page = await browser.newPage({ viewport: { width: 1500, height: 950 }, colorScheme: theme });
  page.complaints = [];
  page.asked = [];
  page.on('console', message => { if (message.type() === 'error') page.complaints.push(message.text()); });
  page.on('pageerror', error => page.complaints.push(error.message));
  page.on('request', request => page.asked.push(request.url()));
  await page.goto(pathToFileURL(file).href);
  await page.waitForFunction(() => document.documentElement.dataset.shown, null, { timeout: 60000 });
  return page;
}

async function closed(page) {
  assert.deepEqual(page.complaints, []);
  assert.equal(page.asked.length, 1, `the page asked for ${page.asked}`);
  await page.close();
}

const settled = page => page.evaluate(() => new Promise(done => requestAnimationFrame(() => requestAnimationFrame(done))));
const panes = page => page.locator('.pane');

async function colourAt(page, pane, dx = 0, dy = 0) {
  await page.evaluate(() => window.scrollTo(0, 0));
  await settled(page);
  const box = await panes(page).nth(pane).boundingBox();
  const clip = { x: Math.floor(box.x + box.width / 2 + dx), y: Math.floor(box.y + box.height / 2 + dy), width: 1, height: 1 };
  return pixelsOf(await page.screenshot({ clip }))[0];
}

const near = (a, b) => a.every((x, k) => Math.abs(x - b[k]) <= 3);
const mark = { light: [0xd0, 0x00, 0x6f], dark: [0xff, 0x6e, 0xc0] };

// What the box of the picked triangle says, by name.
const valuesOf = page => page.$$eval('#values dt', names => Object.fromEntries(names.map(dt => [dt.textContent, dt.nextSibling.textContent])));
const numberIn = text => Number(text.replace('\u2212', '-').replace(/\u202f.*/, ''));

const full = JSON.parse(readFileSync(join(pages, 'full.json')));
const field = name => full.fields.find(one => one.name === name);

const tests = {
  async 'text from files stays text'() {
    const page = await opened(join(pages, 'full.html'));
    assert.equal(await page.evaluate(() => window.hacked), undefined);
    assert.equal(await page.locator('script').count(), 3);
    assert.equal(await page.locator('body b:not(.legend b)').count(), 0);
    assert.equal(await page.locator('#name').textContent(), full.part.split('/').pop());
    assert.ok((await page.locator('#figures').textContent()).includes(full.part));
    assert.equal(await page.title(), `${full.part} - tornwalzen`);
    await closed(page);
  },

  async 'the values of a picked triangle are those that were written'() {
    const page = await opened(join(pages, 'full.html'));
    for (const e of [0, 5, 1, 1234, 1600, 3199]) {
      await page.fill('#number', String(full.first + e));
      await page.press('#number', 'Enter');
      const shown = await valuesOf(page);
      for (const { name, power, values, unit } of full.fields) {
        if (name === 'zone') { assert.equal(shown[name], ['safe', 'marginal', 'split'][values[e]]); continue; }
        if (values[e] === null) { assert.equal(shown[name], 'none'); continue; }
        assert.ok(Math.abs(numberIn(shown[name]) - values[e]) <= 0.5000001 * 10 ** power, `${name} of ${e}: ${shown[name]} for ${values[e]}`);
        assert.ok(!unit || shown[name].endsWith(unit));
      }
    }
    await page.fill('#number', '999999');
    await page.click('#triangle >> text=Show');
    assert.match(await page.locator('#values').textContent(), /no triangle 999999/);
    await closed(page);
  },

  async 'a picked triangle lights up in both views, by either'() {
    for (const theme of ['light', 'dark']) {
      const page = await opened(join(pages, 'full.html'), theme);
      const number = full.first + 1333;
      await page.fill('#number', String(number));
      await page.press('#number', 'Enter');
      for (const pane of [0, 1]) assert.ok(near(await colourAt(page, pane), mark[theme]), `pane ${pane} of ${theme}: ${await colourAt(page, pane)}`);
      for (const pane of [0, 1]) {
        await page.click('#triangle >> text=Clear');
        assert.equal(await page.inputValue('#number'), '');
        for (const other of [0, 1]) assert.ok(!near(await colourAt(page, other), mark[theme]));
        await panes(page).nth(pane).click();
        assert.equal(await page.inputValue('#number'), String(number));
        for (const other of [0, 1]) assert.ok(near(await colourAt(page, other), mark[theme]));
      }
      assert.match(await page.locator('#live').textContent(), new RegExp(`Triangle 1.?${number % 1000}: thinning`));
      await closed(page);
    }
  },

  async 'fields, bands, edges and range change the colours'() {
    const page = await opened(join(pages, 'full.html'));
    const seen = new Set([(await colourAt(page, 1, 40, 30)).join()]);
    for (const [k, words] of [[1, 'Major strain'], [3, 'Equivalent strain'], [4, 'Flow stress in MPa'], [5, 'Zone']]) {
      await page.check(`#field-${k}`, { force: true });
      assert.ok((await page.locator('#legend').textContent()).startsWith(words));
      seen.add((await colourAt(page, 1, 40, 30)).join());
    }
    assert.ok(seen.size >= 4, `${seen.size} colours`);
    await page.check('#field-4', { force: true });
    const before = await colourAt(page, 1, 40, 30);
    await page.fill('#range-high', '2000');
    await page.press('#range-high', 'Enter');
    assert.notDeepEqual(await colourAt(page, 1, 40, 30), before);
    await page.fill('#range-high', '-5');
    await page.press('#range-high', 'Enter');
    assert.equal(await page.inputValue('#range-high'), '2000.0', 'a range that ends before it begins is not taken');
    await page.click('.range >> text=All');
    const { values } = field('flow stress');
    assert.equal(await page.inputValue('#range-high'), Math.max(...values).toFixed(1));
    assert.equal(await page.inputValue('#range-low'), Math.min(...values).toFixed(1));
    for (const id of ['bands', 'edges']) {
      const plain = await panes(page).nth(1).screenshot();
      await page.check(`#${id}`);
      await settled(page);
      assert.notDeepEqual(await panes(page).nth(1).screenshot(), plain, id);
    }
    await closed(page);
  },

  async 'classes tell their triangles and can be looked at alone'() {
    const page = await opened(join(pages, 'full.html'));
    await page.check('#field-5', { force: true });
    const counts = [0, 1, 2].map(k => field('zone').values.filter(value => value === k).length);
    assert.deepEqual(await page.$$eval('.classes button', all => all.map(one => Number(one.textContent.match(/: (\d+)/)[1]))), counts.filter(Boolean));
    const before = await colourAt(page, 1, -150, 150);
    await page.click('.classes >> text=split');
    assert.equal(await page.getAttribute('.classes button:has-text("split")', 'aria-pressed'), 'true');
    assert.notDeepEqual(await colourAt(page, 1, -150, 150), before);
    await page.click('.classes >> text=split');
    assert.deepEqual(await colourAt(page, 1, -150, 150), before);
    await closed(page);
  },

  async 'a rectangle in the diagram picks its triangles out'() {
    const page = await opened(join(pages, 'full.html'));
    assert.equal(await page.locator('#diagram-title').textContent(), 'Forming-limit diagram');
    const [a, b, c, d] = [-0.11, 0.02, 0.05, 0.2], [major, minor] = [field('major strain'), field('minor strain')];
    const boxes = page.locator('.brush-row input');
    for (const [k, value] of [a, b, c, d].entries()) await boxes.nth(k).fill(String(value));
    await boxes.nth(3).press('Enter');
    const on = (one, e) => Math.round(one.values[e] / 10 ** one.power) * 10 ** one.power;
    const count = major.values.filter((_, e) => on(minor, e) >= a && on(minor, e) <= b && on(major, e) >= c && on(major, e) <= d).length;
    assert.ok(count > 10 && count < 3000);
    assert.equal(numberIn((await page.locator('.told').textContent()).replace(/ of.*/, '').replace('\u202f', '')), count);
    const muted = await colourAt(page, 1, -150, 150);
    await page.click('.brush-row >> text=Clear');
    assert.equal(await page.locator('.told').textContent(), '');
    assert.notDeepEqual(await colourAt(page, 1, -150, 150), muted);
    await page.locator('.plot svg').scrollIntoViewIfNeeded();
    const box = await page.locator('.plot svg').boundingBox();
    await page.mouse.move(box.x + 0.1 * box.width, box.y + 0.05 * box.height);
    await page.mouse.down();
    await page.mouse.move(box.x + 0.97 * box.width, box.y + 0.9 * box.height, { steps: 4 });
    await page.mouse.up();
    assert.match(await page.locator('.told').textContent(), /of 3\u202f200 triangles, (100\.0|99\.\d)/);
    await closed(page);
  },

  async 'mouse, wheel and keys turn, move and zoom'() {
    const page = await opened(join(pages, 'full.html'));
    const seen = new Set();
    const look = async what => {
      await settled(page);
      const picture = (await panes(page).nth(0).screenshot()).toString('base64');
      assert.ok(!seen.has(picture), `${what} changes the view`);
      seen.add(picture);
    };
    await look('the opening');
    await panes(page).nth(0).focus();
    for (const key of ['ArrowLeft', 'ArrowUp', 'Shift+ArrowRight', '+', 't', '-', '-']) { await page.keyboard.press(key); await look(key); }
    await page.keyboard.press('Enter');
    assert.notEqual(await page.inputValue('#number'), '', 'Enter picks at the centre');
    await page.keyboard.press('Escape');
    assert.equal(await page.inputValue('#number'), '');
    const box = await panes(page).nth(0).boundingBox(), [x, y] = [box.x + box.width / 2, box.y + box.height / 2];
    await page.keyboard.press('0');
    for (const button of ['left', 'right']) {
      await page.mouse.move(x, y);
      await page.mouse.down({ button });
      await page.mouse.move(x + 60, y - 30, { steps: 3 });
      await page.mouse.up({ button });
      await page.mouse.move(box.x + 5, box.y + 5);
      await look(button);
    }
    assert.equal(await page.inputValue('#number'), '', 'turning picks nothing');
    await page.mouse.wheel(0, -300);
    await look('the wheel');
    const triad = () => page.locator('.triad').nth(1).innerHTML();
    const apart = await triad();
    await page.check('#link');
    await settled(page);
    assert.notEqual(await triad(), apart);
    await closed(page);
  },

  async 'themes follow the system until the reader chooses'() {
    const page = await opened(join(pages, 'full.html'), 'dark');
    const theme = () => page.evaluate(() => document.documentElement.dataset.theme);
    assert.equal(await theme(), 'dark');
    await page.click('#theme');
    assert.equal(await theme(), 'light');
    await page.click('#theme');
    assert.equal(await theme(), 'dark');
    await closed(page);
  },

  async 'every control has a name, every section its heading'() {
    const page = await opened(join(pages, 'full.html'));
    const nameless = await page.$$eval('button, input, [role=img], [role=application]', all => all.filter(one =>
      !(one.getAttribute('aria-label') || one.textContent.trim() || one.labels?.length)).map(one => one.outerHTML.slice(0, 80)));
    assert.deepEqual(nameless, []);
    const headless = await page.$$eval('section', all => all.filter(one => !document.getElementById(one.getAttribute('aria-labelledby'))?.textContent).map(one => one.outerHTML.slice(0, 80)));
    assert.deepEqual(headless, []);
    await closed(page);
  },

  async 'outline, strip and convergence are drawn'() {
    const page = await opened(join(pages, 'full.html'));
    const below = await page.locator('#below').textContent();
    for (const words of ['Outline of the blank', '100.0', '\u2300 20.0', 'On the strip', '110.0', '104.0', 'utilisation', 'Convergence', '8 Newton iterations in 3 increments, 1 of them repeated'])
      assert.ok(below.includes(words), words);
    assert.equal(await page.locator('[aria-labelledby=outline-title] .wrong').count(), 1);
    assert.equal(await page.locator('[aria-labelledby=strip-title] .sheet').count(), 3);
    assert.equal(await page.locator('[aria-labelledby=convergence-title] circle').count(), 8);
    await closed(page);
  },

  async 'what is not there is not shown'() {
    const page = await opened(join(pages, 'bare.html'));
    assert.equal(await page.locator('#below').textContent(), '');
    assert.equal(await page.locator('#figures').isVisible(), false);
    assert.equal(await page.locator('#legend').isVisible(), false);
    await panes(page).nth(1).click();
    assert.notEqual(await page.inputValue('#number'), '');
    await closed(page);
  },

  async 'a damaged page says so'() {
    const page = await browser.newPage();
    const text = readFileSync(join(pages, 'bare.html'), 'utf8').replace(/(id="report-mesh">.{40})[^<]*/, '$1');
    await page.setContent(text);
    await page.waitForSelector('.refused');
    assert.match(await page.locator('.refused').textContent(), /could not be shown/);
    await page.close();
  },

  async '200,000 triangles take 1.5 MB at most, and the time they take to stand is told'() {
    for (const name of ['large.html', 'shuffled.html']) {
      const text = readFileSync(join(pages, name), 'utf8');
      const bytes = text.match(/id="report-mesh">([^<]*)/)[1].length, count = Number(text.match(/"triangles":(\d+)/)[1]);
      assert.ok(count >= 200000);
      assert.ok(bytes <= 1500000, `${name}: ${bytes} bytes`);
      const times = [];
      for (let k = 0; k < 3 && !(Math.min(...times) <= 2000); ++k) {  // another job may have the processor once
        const page = await opened(join(pages, name));
        times.push(await page.evaluate(() => Number(document.documentElement.dataset.shown)));
        await closed(page);
      }
      console.log(`  ${name}: ${count} triangles, mesh and six fields ${bytes} bytes, page ${text.length}; shown after ${times} ms`);
    }
  },

  async 'runs of the program'() {
    const runs = [['square_cup', join(project, 'samples', 'square_cup.obj'), 'x0,y0', '1']];
    for (const [name, hold, thickness] of [['dfg_cup_quarter', 'x0,y0', '0.95'], ['car_hood_outer', 'auto', '0.7'], ['sheet_panel_13holes', 'auto', '1']])
      if (existsSync(join(parts, `${name}.obj`))) runs.push([name, join(parts, `${name}.obj`), hold, thickness]);
    for (const [name, part, hold, thickness] of runs) {
      const folder = join(pages, name);
      execFileSync(program, ['solve', basename(part), '--hold', hold, '--material', 'DC04', '--thickness', thickness, '--web', '5', '--out', folder, '--force'],
        { stdio: 'ignore', cwd: dirname(part) });
      for (const theme of ['light', 'dark']) {
        const page = await opened(join(folder, 'report.html'), theme);
        const summary = JSON.parse(readFileSync(join(folder, 'summary.json')));
        await page.click('.places >> text=Thinnest');
        assert.equal(Number(await page.inputValue('#number')), summary.thinnest.element_number_in_file);
        const thinning = (await valuesOf(page)).thinning, wanted = 100 * (1 - summary.thinnest.thickness_ratio_Ablank_by_Apart);
        assert.ok(Math.abs(numberIn(thinning) - wanted) < 0.0051, `${thinning} for ${wanted}`);
        assert.equal((await page.locator('#pill').textContent()).toLowerCase(), summary.verdict);
        const card = await page.locator('[aria-labelledby=convergence-title]').textContent(), told = summary.newton_iterations;
        assert.ok(card.includes(`after each of ${told} Newton iteration${told === 1 ? '' : 's'}`), `${told} in: ${card}`);
        await page.click('#fit');
        assert.ok(await page.locator('.chips >> text=Limit zone').count(), 'a limit curve has its zones');
        const striped = existsSync(join(folder, 'strip.svg'));
        assert.equal(await page.locator('[aria-labelledby=strip-title]').count(), striped ? 1 : 0, 'the strip of strip.svg');
        if (shots) {
          await page.setViewportSize({ width: 1280, height: 800 });
          mkdirSync(shots, { recursive: true });
          await page.click('#triangle >> text=Clear');
          await page.mouse.move(1, 1);
          await settled(page);
          await page.screenshot({ path: join(shots, `report_${name}_${theme}.jpg`), type: 'jpeg', quality: 60, fullPage: true });
        }
        await closed(page);
      }
      console.log(`  ${name}: ${statSync(join(folder, 'report.html')).size} bytes`);
    }
  },
};

let failed = 0;
for (const [name, test] of Object.entries(tests)) {
  try {
    await test();
    console.log(`passed: ${name}`);
  } catch (error) {
    ++failed;
    console.log(`FAILED: ${name}\n${error.stack}`);
  }
}
await browser.close();
process.exit(failed ? 1 : 0);
