// Exact numbers: times of tracks with different edit rates meet on one axis.

const divisor = (a, b) => (b === 0n ? a : divisor(b, a % b));
const absolute = (number) => (number < 0n ? -number : number);

export function rational(numerator, denominator = 1n) {
  const [top, bottom] = [BigInt(numerator), BigInt(denominator)];
  const by = divisor(absolute(top), absolute(bottom)) * (bottom < 0n ? -1n : 1n);
  return { top: top / by, bottom: bottom / by };
}

export const zero = rational(0);
export const add = (a, b) => rational(a.top * b.bottom + b.top * a.bottom, a.bottom * b.bottom);
export const minus = (a) => ({ top: -a.top, bottom: a.bottom });
export const subtract = (a, b) => add(a, minus(b));
export const isLess = (a, b) => a.top * b.bottom < b.top * a.bottom;
export const lesser = (a, b) => (isLess(a, b) ? a : b);
export const greater = (a, b) => (isLess(a, b) ? b : a);
/** The nearest number, for drawing only. */
export const toNumber = (a) => Number(a.top) / Number(a.bottom);

/** Edit units as seconds; null where the rate has no sense. */
export function seconds(units, rate) {
  if (!rate || BigInt(rate.numerator) <= 0n || BigInt(rate.denominator) <= 0n) return null;
  return rational(BigInt(units) * BigInt(rate.denominator), BigInt(rate.numerator));
}
