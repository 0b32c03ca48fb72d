const grouped = new Intl.NumberFormat('en');

/** 12,345 */
export const count = (number) => grouped.format(number);

/** "1 set", "2 sets" */
export const counted = (number, noun) => `${count(number)} ${noun}${number === 1 ? '' : 's'}`;

/** "24,845 bytes", "5.0 GB" */
export function bytes(number) {
  if (number < 100_000) return counted(number, 'byte');
  const units = ['kB', 'MB', 'GB', 'TB', 'PB'];
  let value = number;
  let unit = -1;
  do {
    value /= 1000;
    unit += 1;
  } while (value >= 999.95 && unit + 1 < units.length);
  return `${value.toFixed(value < 100 ? 1 : 0)} ${units[unit]}`;
}

/** The share of a whole: "98.2 %", "under 0.1 %" */
export function share(part, whole) {
  const percent = whole === 0 ? 0 : (100 * part) / whole;
  if (percent > 0 && percent < 0.1) return 'under 0.1 %';
  return `${percent.toFixed(percent === 100 ? 0 : 1)} %`;
}

/** 25/1 as "25", 30000/1001 as "29.97", of several digits no more than three. */
export function decimal({ numerator, denominator }) {
  return denominator === 0 ? `${numerator}/0` : String(Number((numerator / denominator).toFixed(3)));
}
