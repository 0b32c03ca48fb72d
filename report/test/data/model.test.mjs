import assert from 'node:assert/strict';
import { test } from 'node:test';
import { visibleRows, withAncestors } from '../../src/data/rows.js';
import { search } from '../../src/data/search.js';
import { modelOf } from './sets.mjs';

const small = () =>
  modelOf({
    root: ['Preface', { ContentStorageObject: '#storage', Packages: ['#a', '#gone'] }],
    storage: ['ContentStorage', { Packages: ['#a', '#b'] }],
    a: ['MaterialPackage', { PackageName: 'Holby City', LinkedTo: '#lone' }],
    b: ['SourcePackage', { Rate: { numerator: 30000, denominator: 1001 } }],
    lone: ['Identification', {}],
    one: ['Circle', { TrackSegment: '#two' }],
    two: ['Circle', { TrackSegment: '#one' }],
  });

const shape = (rows, model) => rows.map(({ place, level, position, size }) => `${level} ${position}/${size} ${model.sets[place].id}`);

test('a set is in the tree once, below what owns it first', () => {
  const model = small();
  assert.deepEqual(shape(visibleRows(model, () => true), model), [
    '1 1/3 root',
    '2 1/2 storage',
    '3 1/1 b',
    '2 2/2 a',
    '1 2/3 lone',
    '1 3/3 one',
    '2 1/1 two',
  ]);
});

test('folded sets hide what they own', () => {
  const model = small();
  const rows = visibleRows(model, (place) => model.sets[place].id === 'root');
  assert.deepEqual(rows.map(({ place }) => model.sets[place].id), ['root', 'storage', 'a', 'lone', 'one']);
  assert.equal(rows[1].hasChildren, true);
  assert.equal(rows[1].isOpen, false);
  assert.equal(rows[2].hasChildren, false);
});

test('a byte leads to the set that holds it', () => {
  const model = small();
  const cases = [
    [0, 'root'],
    [99, 'root'],
    [100, 'storage'],
    [350, 'b'],
    [699, 'two'],
    [700, undefined],
  ];
  for (const [byte, id] of cases) {
    const place = model.at(byte);
    assert.equal(place === undefined ? undefined : model.sets[place].id, id, String(byte));
  }
});

test('references lead back to who refers', () => {
  const model = small();
  assert.deepEqual(model.referrersOf(model.find('lone')).map((place) => model.sets[place].id), ['a']);
  assert.deepEqual(model.referrersOf(model.find('a')).map((place) => model.sets[place].id), ['root', 'storage']);
});

test('search finds classes, identifiers, names and values, whatever is folded', () => {
  const model = small();
  const cases = [
    ['holby', ['a']],
    ['PACKAGE', ['root', 'storage', 'a', 'b']],
    ['29.97', ['b']],
    ['30000/1001', ['b']],
    ['circle', ['one', 'two']],
    ['lone', ['a', 'lone']],
    ['nothing', []],
  ];
  for (const [text, ids] of cases) {
    const { marks, found } = search(model, text);
    assert.deepEqual(model.sets.filter((_, place) => marks[place]).map(({ id }) => id), ids, text);
    assert.equal(found, ids.length);
  }
});

test('search finds bytes of dark sets, however they are written, and their names', () => {
  const model = small();
  model.sets.push({ class: null, name: 'Vendor Set', hex: '00DEADBEEF' });
  for (const text of ['DEADBEEF', 'deadbeef', 'de ad', 'vendor']) {
    assert.equal(search(model, text).found, 1, text);
  }
});

test('a property is defined by its class where classes have different ones of one name', () => {
  const model = small();
  const [place] = model.roots;
  model.definitions = { Name: 1, [`${model.classOf(place)}/Name`]: 2 };
  assert.equal(model.definition(place, 'Name'), 2);
  assert.equal(model.definition(model.find('a'), 'Name'), 1);
});

test('what is found is shown with the sets above', () => {
  const model = small();
  const kept = withAncestors(model, search(model, '29.97').marks);
  assert.deepEqual(model.sets.filter((_, place) => kept[place]).map(({ id }) => id), ['root', 'storage', 'b']);
});

test('search finds the name of a set that has a class, too', () => {
  const model = small();
  model.sets.push({ class: 'Preface', name: 'Vendor Set' });
  assert.equal(search(model, 'vendor').found, 1);
});

test('search finds digits where bytes begin, not across halves of bytes', () => {
  const model = small();
  const before = model.sets.length;
  model.sets.push(
    { class: null, hex: '1ABCD2' },
    { class: 'A', other: [{ why: 'unknown', hex: '1ABCD2' }] },
    { class: 'A', properties: { Data: { hex: '1ABCD2', bytes: 3 } } },
    { class: 'A', properties: { Text: { utf16: 'D8001ABC' } } },
  );
  const foundBy = (text) => [...search(model, text).marks.slice(before)].join('');
  assert.equal(foundBy('bcd2'), '1110');
  assert.equal(foundBy('1a bc'), '1111');
  assert.equal(foundBy('abcd'), '0000');
  assert.equal(foundBy('001a'), '0000');
});
