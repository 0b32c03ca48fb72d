import assert from 'node:assert/strict';
import { test } from 'node:test';
import { bytes, share } from '../../src/data/numbers.js';
import { pieces, printable } from '../../src/data/printable.js';
import { oddities } from '../../src/data/reasons.js';
import { clock, frameRate, timecode } from '../../src/data/timecode.js';
import { formOf, textOf } from '../../src/data/values.js';

const table = (name, cases, call) =>
  test(name, () => {
    for (const [input, expected] of cases) assert.equal(call(input), expected, JSON.stringify(input));
  });

table(
  'characters that people can\'t see are codes',
  [
    ['plain', 'plain'],
    ['a\u202eb', 'a[U+202E]b'],
    ['\u2066x\u2069', '[U+2066]x[U+2069]'],
    ['tab\there', 'tab[U+0009]here'],
    ['\ud800', '[U+D800]'],
    ['\u{e0041}', '[U+E0041]'],
    ['\u05e9\u05dc\u05d5\u05dd \u65e5\u672c \u{1f600}', '\u05e9\u05dc\u05d5\u05dd \u65e5\u672c \u{1f600}'],
    ['</script>', '</script>'],
  ],
  printable,
);

test('a text with codes keeps what is between them', () => {
  assert.deepEqual(pieces('a\u202eb\u202c'), [{ text: 'a' }, { code: 'U+202E' }, { text: 'b' }, { code: 'U+202C' }]);
  assert.deepEqual(pieces(''), []);
});

const pal = { framesPerSecond: 25, dropFrame: false };
const drop = { framesPerSecond: 30, dropFrame: true };

table(
  'timecode counts frames',
  [
    [[0, pal], '00:00:00:00'],
    [[897000, pal], '09:58:00:00'],
    [[90000 * 24, pal], '00:00:00:00'],
    [[1799, drop], '00:00:59;29'],
    [[1800, drop], '00:01:00;02'],
    [[17982, drop], '00:10:00;00'],
    [[107892, drop], '01:00:00;00'],
    [[3600, { framesPerSecond: 60, dropFrame: true }], '00:01:00;04'],
    [[7, { framesPerSecond: 0, dropFrame: false }], '7'],
  ],
  ([frames, rate]) => timecode(frames, rate),
);

table(
  'seconds are shown as a clock does',
  [
    [0, '0 s'],
    [0.04, '0.04 s'],
    [59.5, '59.5 s'],
    [61, '1:01'],
    [3600, '1:00:00'],
    [432000, '120:00:00'],
    [62.25, '1:02.25'],
    [59.9998, '1:00'],
    [119.9998, '2:00'],
    [3599.9999, '1:00:00'],
  ],
  clock,
);

const ratio = (numerator, denominator) => ({ numerator, denominator });
table(
  'a timecode runs at its own rate whatever its track counts',
  [
    [[25, ratio(25, 1)], 25],
    [[30, ratio(30000, 1001)], 30000 / 1001],
    [[25, ratio(48000, 1)], 25],
    [[25, ratio(25, 0)], 25],
    [[25, undefined], 25],
    [[60, ratio(30000, 1001)], 60000 / 1001],
    [[30, ratio(60000, 1001)], 30000 / 1001],
    [[25, ratio(0, 1)], 25],
    [[0, ratio(25, 1)], null],
  ],
  ([framesPerSecond, rate]) => frameRate({ framesPerSecond }, rate),
);

table('sizes have three digits or so', [[0, '0 bytes'], [1, '1 byte'], [24845, '24,845 bytes'], [1500000, '1.5 MB'], [999_999_999, '1.0 GB']], bytes);
table('a share is never nought by rounding', [[[0, 10], '0.0 %'], [[1, 1e9], 'under 0.1 %'], [[1, 1], '100 %'], [[1, 3], '33.3 %']], ([part, whole]) => share(part, whole));

table(
  'values have a form',
  [
    [null, 'nothing'],
    [[1], 'list'],
    [{ ref: 'a', class: 'B' }, 'reference'],
    [{ label: 'a', name: null }, 'label'],
    [{ numerator: 1, denominator: 0 }, 'rational'],
    [{ utf16: 'D800' }, 'codeUnits'],
    [{ hex: '00' }, 'bytes'],
    [{ value: 1, name: 'One' }, 'member'],
    [{ Year: 0 }, 'fields'],
    ['text', 'string'],
  ],
  formOf,
);

table(
  'values are texts',
  [
    [{ numerator: 25, denominator: 1 }, '25'],
    [{ numerator: 30000, denominator: 1001 }, '30000/1001 (29.97)'],
    [{ numerator: 1, denominator: 0 }, '1/0'],
    [[1, 2], '1, 2'],
    [{ label: '06.0e', name: 'A' }, 'A (06.0e)'],
    [{ value: 1, name: null }, '1'],
    [{ Year: 2020, Month: 0 }, 'Year 2020, Month 0'],
  ],
  textOf,
);

test('what is not among the properties of a set is counted by its reason', () => {
  const other = [{ why: 'unknown' }, { why: 'repeated' }, { why: 'unknown' }, { why: 'misplaced' }, { why: 'unfit' }];
  assert.deepEqual(oddities({ other }), ['2 unknown', '1 repeated', '1 of other sets', '1 does not fit its type']);
  assert.deepEqual(oddities({}), []);
});
