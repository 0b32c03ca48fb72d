import assert from 'node:assert/strict';
import { test } from 'node:test';
import { Model } from '../../src/data/model.js';
import { visibleRows } from '../../src/data/rows.js';
import { search } from '../../src/data/search.js';
import { modelOf } from './sets.mjs';

/** A model of two clips. */
function compared(before, after, comparison) {
  const data = (described) => modelOf(described).data;
  return new Model({ ...data(after), comparison: { otherInstanceUIDs: 0, changed: [], before: data(before), ...comparison } });
}

const two = () =>
  compared(
    {
      root: ['Preface', { ContentStorageObject: '#storage' }],
      storage: ['ContentStorage', { Packages: ['#gone', '#a'] }],
      gone: ['SourcePackage', { PackageTracks: ['#track'] }],
      track: ['Track', { LinkedTo: '#a' }],
      a: ['MaterialPackage', { PackageName: 'Old', Kept: 1, Lost: 2 }],
    },
    {
      root: ['Preface', { ContentStorageObject: '#depot' }],
      depot: ['ContentStorage', { Packages: ['#b', '#new'] }],
      b: ['MaterialPackage', { PackageName: 'Name', Kept: 1 }],
      new: ['SourcePackage', {}],
    },
    { pairs: [0, 1, 4, null], changed: [[1, ['06.0e']], [2, ['PackageName', 'Lost']]] },
  );

test('sets that only the first clip has are below what owned them', () => {
  const model = two();
  const shape = visibleRows(model, () => true).map(({ place, level }) => [level, model.sets[place].id, model.comparison.changeOf(place) ?? 'same']);
  assert.deepEqual(shape, [
    [1, 'root', 'same'],
    [2, 'depot', 'changed'],
    [3, 'b', 'changed'],
    [3, 'new', 'added'],
    [3, 'gone', 'removed'],
    [4, 'track', 'removed'],
  ]);
  assert.deepEqual(model.comparison.differences(model.sets.length).counts, { added: 1, removed: 2, changed: 2 });
});

test('what the first clip refers to leads to the sets of the second that belong to it', () => {
  const model = two();
  assert.equal(model.comparison.earlier.find('a'), model.find('b'));
  assert.equal(model.comparison.earlier.find('nobody'), undefined);
});

test('properties say what became of them', () => {
  const model = two();
  const rows = model.rowsOf(model.find('b')).map(({ name, change, value, earlier }) => [name, change, value, earlier?.value]);
  assert.deepEqual(rows, [
    ['PackageName', 'changed', 'Name', 'Old'],
    ['Kept', undefined, 1, undefined],
    ['Lost', 'removed', 2, undefined],
  ]);
});

test('a byte of the first clip leads to the set that it is in', () => {
  const { comparison, sets } = two();
  assert.equal(sets[comparison.at(350)].id, 'track');
  assert.equal(sets[comparison.at(150)].id, 'depot');
});

test('search finds what a set said before', () => {
  const model = two();
  const { marks, found } = search(model, 'old');
  assert.deepEqual([found, marks[model.find('b')]], [1, 1]);
});
