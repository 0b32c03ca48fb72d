import assert from 'node:assert/strict';
import { createHash } from 'node:crypto';
import { readFile } from 'node:fs/promises';
import { test } from 'node:test';
import { page } from '../../build.mjs';

const committed = () => readFile(new URL('../../bundle/page.html', import.meta.url), 'utf8');

test('the bundle is what the sources make', async () => {
  assert.ok((await committed()) === (await page()), 'run npm run build in report/');
});

test('the bundle is under 120 kB and names no other place', async () => {
  const text = await committed();
  assert.ok(text.length < 120_000, String(text.length));
  const addresses = text.match(/\bhttps?:\/\/[^"'` )]*/g) ?? [];
  // Names of XML namespaces are no addresses that anything asks for.
  assert.deepEqual(addresses.filter((each) => !each.startsWith('http://www.w3.org/')), []);
});

test('the policy has the hashes of script and style', async () => {
  const text = await committed();
  for (const [open, end] of [['<style>', '</style>'], ['</script>\n<script>', '</script>']]) {
    const from = text.indexOf(open) + open.length;
    const content = text.slice(from, text.indexOf(end, from));
    const hash = createHash('sha256').update(content).digest('base64');
    assert.ok(text.includes(`'sha256-${hash}'`), open);
  }
});

test('the lock file names no registry', async () => {
  const lock = await readFile(new URL('../../package-lock.json', import.meta.url), 'utf8');
  assert.ok(!lock.includes('"resolved"'));
});
