import assert from 'node:assert/strict';
import { test } from 'node:test';
import { add, greater, isLess, lesser, rational, seconds, subtract, toNumber } from '../../src/data/rational.js';

test('a rational is in its lowest terms with a positive denominator', () => {
  const cases = [
    [[6, 4], [3n, 2n]],
    [[-6, 4], [-3n, 2n]],
    [[6, -4], [-3n, 2n]],
    [[0, 7], [0n, 1n]],
  ];
  for (const [[top, bottom], [a, b]] of cases) {
    assert.deepEqual(rational(top, bottom), { top: a, bottom: b });
  }
});

test('frames and samples of one length end at one place', () => {
  const frames = seconds(30000, { numerator: 30000, denominator: 1001 });
  const samples = seconds(48048000, { numerator: 48000, denominator: 1 });
  assert.deepEqual(frames, samples);
  assert.deepEqual(subtract(frames, samples), rational(0));
  assert.ok(isLess(frames, add(samples, rational(1, 1_000_000))));
  assert.deepEqual(lesser(rational(1, 3), rational(1, 2)), rational(1, 3));
  assert.deepEqual(greater(rational(1, 3), rational(1, 2)), rational(1, 2));
});

test('a time beyond 2^53 edit units is exact', () => {
  assert.equal(seconds('9007199254740993', { numerator: 1, denominator: 1 }).top, 9007199254740993n);
});

test('a rate without sense gives no time', () => {
  for (const rate of [undefined, null, { numerator: 0, denominator: 1 }, { numerator: 25, denominator: 0 }, { numerator: -25, denominator: 1 }]) {
    assert.equal(seconds(1, rate), null);
  }
});

test('half a second is drawn at 0.5', () => assert.equal(toNumber(rational(1, 2)), 0.5));
