import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { after, before, test } from 'node:test';
import { eventually, faultsOf, openBrowser, phone } from './browser.mjs';
import { Work, hostile, realClips } from './reports.mjs';

const views = [
  ['desktop, light', {}],
  ['desktop, dark', { colorScheme: 'dark' }],
  ['phone, light', phone],
];

let browser;
let work;
before(async () => {
  work = new Work();
  browser = await openBrowser();
});
after(async () => {
  await browser?.close();
  work?.remove();
});

const tree = (page) => page.getByRole('tree');
const chosen = (page) => page.locator('[role=treeitem][aria-selected=true]');
const heading = (page) => page.locator('.properties h2');

/** Goes once through everything that a page can do. */
async function walkThrough(page) {
  await tree(page).focus();
  await page.keyboard.press('Home');
  const first = await heading(page).innerText();
  await page.keyboard.press('ArrowDown');
  if ((await tree(page).getByRole('treeitem').count()) > 1) {
    await eventually(async () => assert.notEqual(await chosen(page).getAttribute('aria-posinset'), null));
    await page.keyboard.press('ArrowUp');
  }
  await eventually(async () => assert.equal(await heading(page).innerText(), first));
  await page.getByRole('searchbox').fill('e');
  await page.locator('output', { hasText: /\d|none/ }).waitFor();
  await page.getByRole('searchbox').fill('');
}

const clips = () => [...realClips(), ['damaged', work.damaged()], ['hostile', work.hostile()], ['many', work.generated(10_000)]];

test('no clip makes the page complain, ask for anything or exclude anybody', async (t) => {
  for (const [name, clip] of clips()) {
    const address = work.report(clip, name);
    for (const [view, options] of views) {
      await t.test(`${name}, ${view}`, async () => {
        const { page, complaints, close } = await browser.open(address, options);
        await tree(page).waitFor();
        if (options !== phone) await walkThrough(page);
        await eventually(async () => assert.deepEqual(await faultsOf(page), []));
        assert.deepEqual(complaints, []);
        await close();
      });
    }
  }
});

test('title, picture or sound, start, duration and the worst warning are on the first screen', async () => {
  for (const [name, clip] of realClips()) {
    for (const options of [{}, phone]) {
      const { page, close } = await browser.open(work.report(clip, name), options);
      const height = options.viewport?.height ?? 900;
      const places = page.locator('.head h1, .summary dt, .notices li:first-child');
      await places.first().waitFor();
      for (const place of await places.all()) {
        const box = await place.boundingBox();
        await eventually(async () => assert.ok(box.y + box.height <= height, `${name}: ${await place.innerText()}`));
      }
      await close();
    }
  }
});

test('a hostile title is text', async () => {
  const { page, complaints, close } = await browser.open(work.report(work.hostile(), 'hostile'));
  await eventually(async () => assert.equal(await page.locator('h1').innerText(), hostile.shown));
  await eventually(async () => assert.equal(await page.locator('img').count(), 0));
  await eventually(async () => assert.ok(!(await page.title()).includes('\u202e')));
  assert.deepEqual(complaints, []);
  await close();
});

test('without JavaScript there is a summary to read', async () => {
  const { page, complaints, close } = await browser.open(work.report(work.hostile(), 'hostile'), { javaScriptEnabled: false });
  const text = await page.locator('pre').innerText();
  assert.match(text, /Duration/);
  assert.ok(text.includes('</script><img src=x onerror=alert(1)><!--\\u202etxt.exe'), text);
  await eventually(async () => assert.equal(await page.locator('img').count(), 0));
  assert.deepEqual(complaints, []);
  await close();
});

test('the policy of the page allows nothing but its own script and style', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'policy'));
  await tree(page).waitFor();
  const ran = await page.evaluate(() => {
    const refused = [];
    document.addEventListener('securitypolicyviolation', (event) => refused.push(event.effectiveDirective));
    const script = document.createElement('script');
    script.textContent = 'globalThis.hasRun = true';
    document.body.append(script);
    const image = document.createElement('img');
    image.src = 'data:image/gif;base64,R0lGODlhAQABAAAAACw=';
    document.body.append(image);
    return new Promise((resolve) => setTimeout(() => resolve([globalThis.hasRun ?? false, refused.sort()]), 100));
  });
  assert.deepEqual(ran, [false, ['img-src', 'script-src-elem']]);
  await close();
});

test('keys move in the tree as in every tree', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'keys'));
  await tree(page).focus();
  await page.keyboard.press('Home');
  await eventually(async () => assert.match(await chosen(page).innerText(), /Preface/));
  await page.keyboard.press('ArrowLeft');
  await eventually(async () => assert.equal(await chosen(page).getAttribute('aria-expanded'), 'false'));
  const folded = await tree(page).getByRole('treeitem').count();
  await page.keyboard.press('ArrowRight');
  await eventually(async () => assert.equal(await chosen(page).getAttribute('aria-expanded'), 'true'));
  await eventually(async () => assert.ok((await tree(page).getByRole('treeitem').count()) > folded));
  await page.keyboard.press('ArrowRight');
  await eventually(async () => assert.equal(await chosen(page).getAttribute('aria-level'), '2'));
  await eventually(async () => assert.equal(await tree(page).getAttribute('aria-activedescendant'), await chosen(page).getAttribute('id')));
  await page.keyboard.press('ArrowLeft');
  await page.keyboard.press('ArrowLeft');
  await eventually(async () => assert.match(await chosen(page).innerText(), /Preface/));
  await page.keyboard.press('End');
  await eventually(async () => assert.equal(await chosen(page).getAttribute('aria-setsize'), await chosen(page).getAttribute('aria-posinset')));
  await close();
});

test('references are followed by a click and back', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'links'));
  await tree(page).getByText('Preface').click();
  await page.locator('.value a', { hasText: 'ContentStorage' }).click();
  await eventually(async () => assert.match(await heading(page).innerText(), /^ContentStorage/));
  await eventually(async () => assert.match(await chosen(page).innerText(), /ContentStorage/));
  await page.goBack();
  await eventually(async () => assert.match(await heading(page).innerText(), /^Preface/));
  await close();
});

test('the address of a set leads to it, unfolded and in sight', async () => {
  const address = work.report(work.generated(10_000), 'many');
  const first = await browser.open(address);
  await first.page.getByRole('searchbox').fill('SourceClip');
  await first.page.getByRole('searchbox').press('Enter');
  await chosen(first.page).waitFor();
  const hash = new URL(first.page.url()).hash;
  const name = await heading(first.page).innerText();
  await first.close();
  const second = await browser.open(address + hash);
  await chosen(second.page).waitFor();
  await eventually(async () => assert.equal(await heading(second.page).innerText(), name));
  await eventually(async () => assert.ok(await chosen(second.page).isVisible()));
  await second.close();
});

test('a property shows its type, its place in the file and its bytes', async () => {
  const clip = work.sample();
  const { page, close } = await browser.open(work.report(clip, 'bytes'));
  await page.getByRole('searchbox').fill('MaterialPackage');
  await tree(page).locator('.row', { hasText: /^.?MaterialPackage/ }).click();
  const property = page.locator('.property', { hasText: 'PackageTracks' });
  await eventually(async () => assert.match(await property.innerText(), /Array\(StrongReference\)|Batch\(StrongReference\)/));
  const about = await property.locator('.about').innerText();
  const [, offset] = /byte ([\d,]+)/.exec(about);
  const hex = (await property.locator('code').first().innerText()).replaceAll(' ', '').slice(0, 32);
  const begin = Number(offset.replaceAll(',', '')) + 4;
  assert.equal(readFileSync(clip).subarray(begin, begin + 16).toString('hex'), hex.toLowerCase());
  await close();
});

test('what the registers say of a property is shown, also by keys and on a phone', async () => {
  for (const options of [{}, phone]) {
    const { page, close } = await browser.open(work.report(work.sample(), 'registered'), options);
    await tree(page).getByText('Preface').click();
    const registered = page.locator('.property', { hasText: 'ContentStorageObject' }).locator('.registered');
    await eventually(async () => assert.match(await registered.innerText(), /^Content$/));
    await registered.locator('summary').focus();
    await page.keyboard.press('Enter');
    await eventually(async () => assert.match(await registered.innerText(), /Label\s+06\.0e\.2b\.34\.01\.01\.01\.02\.06\.01\.01\.04\.02\.01\.00\.00/));
    await close();
  }
});

test('the tree says why properties are not among those of their set', async () => {
  const { page, close } = await browser.open(work.report(work.odd(), 'odd'));
  await tree(page).waitFor();
  await eventually(async () => {
    const marks = (await tree(page).locator('.mark.odd').allInnerTexts()).sort();
    assert.deepEqual(marks, ['1 of other sets', '1 repeated']);
  });
  await close();
});

test('a reference to an identifier that several sets have is marked', async () => {
  const { page, close } = await browser.open(work.report(work.ambiguous(), 'ambiguous'));
  await tree(page).getByText('MaterialPackage').click();
  await page.locator('.value .mark', { hasText: 'several sets' }).first().waitFor();
  await close();
});

test('a warning leads to the set that it is about', async () => {
  const broken = work.sample((bytes) => {
    // The value of TrackName (tag 4802) gets an odd length by way of its tag: TrackID has four bytes.
    const copy = Buffer.from(bytes);
    const at = copy.indexOf(Buffer.from('480100040000', 'hex'));
    copy[at + 1] = 0x03;
    return copy;
  }, 'broken.mxf');
  const { page, close } = await browser.open(work.report(broken, 'broken'));
  await page.locator('.notices .warning a').first().click();
  await eventually(async () => assert.match(await heading(page).innerText(), /Track/));
  await close();
});

test('on a phone properties are a page of their own with a way back', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'phone'), phone);
  await eventually(async () => assert.equal(await heading(page).isVisible(), false));
  await tree(page).getByText('Preface').tap();
  await heading(page).waitFor();
  await eventually(async () => assert.equal(await tree(page).isVisible(), false));
  await page.getByRole('button', { name: 'Back' }).tap();
  await tree(page).waitFor();
  await eventually(async () => assert.equal(await heading(page).isVisible(), false));
  await close();
});

test('what can be tapped on a phone has 24 pixels', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'targets'), phone);
  await tree(page).waitFor();
  const small = await page.evaluate(() =>
    [...document.querySelectorAll('a, button, summary, input, [role=treeitem]')]
      .filter((each) => each.checkVisibility())
      .map((each) => [each.outerHTML.slice(0, 120), each.getBoundingClientRect()])
      .filter(([, { height }]) => height < 24)
      .map(([html]) => html),
  );
  assert.deepEqual(small.filter((html) => !html.includes('segment')), []);
  await close();
});

test('of many sets only the rows in sight are in the page, and searching is quick', async () => {
  const { page, close } = await browser.open(work.report(work.generated(10_000), 'many'));
  await tree(page).waitFor();
  await page.getByRole('searchbox').fill('a');
  await page.locator('output', { hasText: /\d/ }).waitFor();
  await eventually(async () => assert.ok((await tree(page).getByRole('treeitem').count()) < 100));
  await page.evaluate(() => {
    document.querySelector('[role=tree]').scrollTop = 1e9;
  });
  await page.waitForFunction(() => document.querySelectorAll('[role=treeitem]').length > 5);
  await eventually(async () => assert.ok((await tree(page).getByRole('treeitem').count()) < 100));
  await close();
});

test('on paper there are as many rows as people may want to print', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'paper'));
  await tree(page).waitFor();
  await page.emulateMedia({ media: 'print' });
  await page.locator('.printed h3', { hasText: 'Preface' }).waitFor();
  await eventually(async () => assert.match(await page.locator('.printed').innerText(), /PackageName Test picture and tone/));
  await eventually(async () => assert.equal(await page.getByRole('searchbox').isVisible(), false));
  await close();
});

test('on paper sets are left out, and counted, beyond so many rows', async () => {
  const { page, close } = await browser.open(work.report(work.generated(10_000), 'long paper'));
  await tree(page).waitFor();
  await page.emulateMedia({ media: 'print' });
  const printed = page.locator('.printed');
  await printed.getByText(/^[\d,]+ more sets are not printed\.$/).waitFor();
  const rows = await printed.locator('h3, h3 ~ p').count();
  assert.ok(rows > 4900 && rows <= 5000, `${rows} rows`);
  await close();
});

test('with forced colours parts have letters and borders, and the chosen set is outlined', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'forced'), { forcedColors: 'active' });
  await tree(page).getByRole('treeitem').first().click();
  const style = (selector, property) =>
    page.locator(selector).first().evaluate((element, name) => getComputedStyle(element)[name], property);
  assert.deepEqual(await page.locator('.broken li').allInnerTexts(), ['P', 'F', 'M']);
  for (const selector of ['.broken li', '.piece', '.segment', '.swatch']) {
    assert.equal(await style(selector, 'borderTopWidth'), '1px', selector);
    assert.notEqual(await style(selector, 'borderTopStyle'), 'none', selector);
  }
  assert.equal(await style('.row[aria-selected=true]', 'outlineStyle'), 'solid');
  await close();
});

test('lines keep their blanks, and bytes keep off the button after them', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'room'));
  await tree(page).waitFor();
  assert.equal(await page.locator('.facts dd').first().evaluate((each) => getComputedStyle(each).whiteSpace), 'pre-wrap');
  for (const line of await page.locator('.facts dd').allTextContents()) assert.equal(line, line.trimStart());
  const button = page.locator('.raw button').first();
  const gap = await button.evaluate((each) => parseFloat(getComputedStyle(each).marginLeft));
  assert.ok(gap >= 4, `${gap} pixels`);
  await close();
});

test('a timecode is drawn as a clip is, without the second border of unknown parts of a file', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'borders'));
  const shadow = (name) => page.locator('.segment', { hasText: name }).first().evaluate((each) => getComputedStyle(each).boxShadow);
  assert.equal(await shadow('Timecode'), await shadow('SourceClip'));
  await close();
});

test('a track whose components are lost says so', async () => {
  const { page, close } = await browser.open(work.report(work.damaged(), 'damaged'));
  await page.getByText('Its components are not in the file').waitFor();
  await close();
});

test('the plain text is not laid out where scripts run', async () => {
  const { page, close } = await browser.open(work.report(work.sample(), 'plain'));
  await tree(page).waitFor();
  const display = await page.evaluate(() => {
    const plain = document.createElement('div');
    plain.className = 'plain';
    document.body.append(plain);
    return getComputedStyle(plain).display;
  });
  assert.equal(display, 'none');
  await close();
});
