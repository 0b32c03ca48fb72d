/** What is wrong with the clip or left out of the page, the worst first. */
export function notices({ summary, rawLimit }) {
  const list = [
    ...summary.errors.map(({ text, byte }) => ({ level: 'error', text, byte, count: 1 })),
    ...summary.warnings.map(({ code, text, count, first }) => ({ level: 'warning', code, text, count, ...first })),
  ];
  if (rawLimit !== null) {
    list.push({
      level: 'note',
      text: `There is much metadata, so the page holds at most ${rawLimit} raw bytes of each value; corvid report --raw all keeps all of them`,
      count: 1,
    });
  }
  return list;
}

export const signs = { error: '\u2715', warning: '!', note: 'i' };

export function verdict(list) {
  const number = (level) => list.filter((each) => each.level === level).length;
  const errors = number('error');
  const warnings = number('warning');
  const parts = [];
  if (errors > 0) parts.push(`${errors} error${errors === 1 ? '' : 's'}`);
  if (warnings > 0) parts.push(`${warnings} warning${warnings === 1 ? '' : 's'}`);
  return {
    level: errors > 0 ? 'error' : warnings > 0 ? 'warning' : 'good',
    text: parts.length > 0 ? parts.join(', ') : 'No warnings',
  };
}
