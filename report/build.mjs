// Makes bundle/page.html, the page without its data, of the sources. `corvid report` fills it in.
import { createHash } from 'node:crypto';
import { readFile, writeFile } from 'node:fs/promises';
import { fileURLToPath } from 'node:url';
import { build } from 'esbuild';

const here = new URL('.', import.meta.url);
const greatestSize = 120_000;

async function bundled(entry) {
  const result = await build({
    absWorkingDir: fileURLToPath(here),
    entryPoints: [entry],
    bundle: true,
    minify: true,
    write: false,
    format: 'iife',
    target: 'es2022',
    charset: 'ascii',
    legalComments: 'none',
    jsx: 'automatic',
    jsxImportSource: 'preact',
  });
  return result.outputFiles[0].text.trim();
}

const hash = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;

export async function page() {
  const [template, style, script] = await Promise.all([
    readFile(new URL('src/page.html', here), 'utf8'),
    bundled('src/style.css'),
    bundled('src/main.jsx'),
  ]);
  if (/<\/script|<!--/i.test(script)) {
    throw new Error('the script holds what would end it');
  }
  const parts = { STYLE: style, SCRIPT: script, 'STYLE-HASH': hash(style), 'SCRIPT-HASH': hash(script) };
  const text = template.replace(/%([A-Z-]+)%/g, (whole, name) => parts[name] ?? whole);
  if (text.length > greatestSize) {
    throw new Error(`the page has ${text.length} bytes, at most ${greatestSize} are wanted`);
  }
  return text;
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
  await writeFile(process.argv[2] ?? new URL('bundle/page.html', here), await page());
}
