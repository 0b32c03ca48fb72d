import axe from 'axe-core';
import { chromium } from 'playwright-core';

export const phone = { viewport: { width: 390, height: 844 }, hasTouch: true };

/** Opens pages in Debian's Chromium and keeps what they say and ask for. */
export async function openBrowser() {
  const browser = await chromium.launch({
    executablePath: process.env.CORVID_CHROMIUM || '/usr/bin/chromium',
    // The sandbox does not work for the root user of a container; the pages are our own.
    args: process.getuid?.() === 0 ? ['--no-sandbox'] : [],
  });
  return {
    close: () => browser.close(),
    async open(address, options = {}) {
      const context = await browser.newContext({ viewport: { width: 1440, height: 900 }, ...options });
      const page = await context.newPage();
      const complaints = [];
      page.on('console', (message) => complaints.push(`console: ${message.text()}`));
      page.on('pageerror', (error) => complaints.push(`error: ${error.message}`));
      page.on('dialog', (dialog) => {
        complaints.push(`dialog: ${dialog.message()}`);
        dialog.dismiss();
      });
      page.on('request', (request) => {
        if (request.url().split('#')[0] !== address.split('#')[0]) complaints.push(`request: ${request.url()}`);
      });
      await page.goto(address);
      return { page, complaints, close: () => context.close() };
    },
  };
}

/** What axe-core finds wrong with a page, a line each. */
export async function faultsOf(page) {
  await page.evaluate(axe.source);
  const { violations } = await page.evaluate(() => globalThis.axe.run());
  return violations.flatMap(({ id, nodes }) => nodes.map(({ html, failureSummary }) => `${id}: ${html}\n${failureSummary}`));
}

/** Waits until what is claimed is so: a page draws a moment after it is told to. */
export async function eventually(claim) {
  const end = Date.now() + 5000;
  for (;;) {
    try {
      return await claim();
    } catch (error) {
      if (Date.now() > end) throw error;
      await new Promise((resolve) => { setTimeout(resolve, 20); });
    }
  }
}
