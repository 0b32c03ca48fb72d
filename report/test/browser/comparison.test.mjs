import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { eventually, faultsOf, openBrowser, phone } from './browser.mjs';
import { Work, realClips } from './reports.mjs';

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

const rows = (page) => page.getByRole('treeitem');
const signed = async (page, kind) => page.locator(`.row .change.${kind}`).count();

test('two edits of one clip differ in the sets and properties that were edited', async () => {
  const address = work.comparison(...work.edits(), 'edits');
  for (const options of [{}, { colorScheme: 'dark' }, phone]) {
    const { page, complaints, close } = await browser.open(address, options);
    await page.locator('.counts', { hasText: '2 sets changed' }).waitFor();
    await eventually(async () => assert.equal(await signed(page, 'changed'), 2));
    await eventually(async () => assert.ok((await rows(page).count()) < 10, 'only differences'));
    await rows(page).filter({ hasText: 'MaterialPackage' }).click();
    const property = page.locator('.property.changed');
    await eventually(async () => assert.equal(await property.count(), 1));
    assert.match(await property.innerText(), /PackageName[\s\S]*Before\s+First[\s\S]*After\s+Second/);
    await eventually(async () => assert.deepEqual(await faultsOf(page), []));
    assert.deepEqual(complaints, []);
    await close();
  }
});

test('on paper are the sets that differ, with the values before and after', async () => {
  const { page, close } = await browser.open(work.comparison(...work.edits(), 'paper'));
  await page.emulateMedia({ media: 'print' });
  const printed = page.locator('.printed');
  await eventually(async () => assert.match(await printed.innerText(), /PackageName First \u2192 Second/));
  assert.equal(await printed.locator('h3').count(), 2);
  assert.equal(await printed.locator('h3 .change.changed').count(), 2);
  await close();
});

test('the first set that differs is shown, with place and bytes of both values', async () => {
  const { page, close } = await browser.open(work.comparison(...work.edits(), 'first difference'));
  await eventually(async () => assert.match(await page.locator('.properties h2').innerText(), /^MaterialPackage/));
  const sides = page.locator('.property.changed .both > div');
  await eventually(async () => assert.equal(await sides.count(), 2));
  const texts = await sides.allInnerTexts();
  assert.match(texts[0], /First[\s\S]*byte [\d,]+[\s\S]*12 bytes[\s\S]*00 46 00 69/);
  assert.match(texts[1], /Second[\s\S]*byte [\d,]+[\s\S]*14 bytes[\s\S]*00 53 00 65/);
  await close();
});

test('warnings of a comparison say whose they are', async () => {
  const { page, close } = await browser.open(work.comparison(work.sample(), work.damaged(), 'whose'));
  await eventually(async () => assert.match(await page.locator('.notices').innerText(), /^About damaged\.mxf/));
  await close();
});

test('all sets are there when not only differences are wanted, and the search finds the value before', async () => {
  const { page, close } = await browser.open(work.comparison(...work.edits(), 'all'));
  const only = page.getByLabel('Only differences');
  await only.uncheck();
  await eventually(async () => assert.equal(await rows(page).count(), 27));
  await page.getByRole('searchbox').fill('First');
  await page.locator('output', { hasText: '1 set' }).waitFor();
  await close();
});

test('of quite different clips, what only the first has is in the tree and has an address', async () => {
  const other = realClips().find(([name]) => name === 'opatom')?.[1] ?? work.generated(100);
  const address = work.comparison(work.sample(), other, 'different');
  const { page, complaints, close } = await browser.open(address);
  await eventually(async () => assert.ok((await signed(page, 'added')) > 0));
  await eventually(async () => assert.ok((await signed(page, 'removed')) > 0));
  await rows(page).filter({ hasText: 'MPEGVideoDescriptor' }).click();
  await eventually(async () => assert.match(await page.locator('.properties h2').innerText(), /MPEGVideoDescriptor[\s\S]*removed/));
  const { hash } = new URL(page.url());
  assert.match(hash, /^#before-\d+$/);
  await eventually(async () => assert.deepEqual(await faultsOf(page), []));
  assert.deepEqual(complaints, []);
  await close();
  const again = await browser.open(address + hash);
  await eventually(async () => assert.match(await again.page.locator('.properties h2').innerText(), /MPEGVideoDescriptor/));
  await again.close();
});

test('of equal clips there are no differences, and all sets are in the tree', async () => {
  const { page, complaints, close } = await browser.open(work.comparison(work.sample(), work.sample(undefined, 'same.mxf'), 'equal'));
  await page.getByText('The sets of both say the same.').waitFor();
  await eventually(async () => assert.equal(await rows(page).count(), 27));
  assert.equal(await page.locator('.change').count(), 0);
  assert.equal(await page.getByLabel('Only differences').count(), 0);
  assert.deepEqual(complaints, []);
  await close();
});

test('without JavaScript the differences are a text', async () => {
  const { page, close } = await browser.open(work.comparison(...work.edits(), 'plain'), { javaScriptEnabled: false });
  const text = await page.locator('pre').innerText();
  assert.match(text, /Compared with first\.mxf[\s\S]*PackageName: "First" -> "Second"/);
  await close();
});
