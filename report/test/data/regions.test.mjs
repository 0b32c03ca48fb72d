import assert from 'node:assert/strict';
import { test } from 'node:test';
import { ends, linear, totals } from '../../src/data/regions.js';

const region = (kind, begin, end) => ({ kind, begin, end, partition: 0 });
const clip = [region('pack', 0, 124), region('metadata', 124, 10_000), region('essence', 10_000, 50_000_000_000)];

test('what is too small to see is a tick, one for each place', () => {
  const pieces = linear(clip, 50_000_000_000);
  assert.deepEqual(pieces.map(({ region: { kind }, isTick }) => [kind, isTick]), [['pack', true], ['essence', false]]);
});

test('of many parts those at either end are shown', () => {
  const many = Array.from({ length: 100 }, (_, i) => region('pack', i, i + 1));
  const { first, left, last } = ends(many, 10);
  assert.deepEqual([first.length, left, last.length], [5, 90, 5]);
  assert.equal(ends(many.slice(0, 10), 10).left, 0);
});

test('kinds are summed up, the largest first', () => {
  assert.deepEqual(totals([...clip, region('pack', 0, 1)]).map(({ kind, regions, bytes }) => [kind, regions, bytes]), [
    ['essence', 1, 49_999_990_000],
    ['metadata', 1, 9876],
    ['pack', 2, 125],
  ]);
});
