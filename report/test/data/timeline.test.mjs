import assert from 'node:assert/strict';
import { test } from 'node:test';
import { toNumber } from '../../src/data/rational.js';
import { ticks, timeline } from '../../src/data/timeline.js';
import { clipOf } from './sets.mjs';

const rate = { EditRate: { numerator: 25, denominator: 1 }, Origin: 0 };
const clip = (length, from, start = 0, track = 1) => [
  'SourceClip',
  { ComponentLength: length, SourcePackageID: from, SourceTrackID: track, StartPosition: start },
];
const shape = ({ segments }) =>
  segments.map((piece) => [
    piece.kind,
    toNumber(piece.shownStart ?? piece.start),
    piece.end === null ? null : toNumber(piece.shownEnd ?? piece.end),
  ]);

test('components follow each other', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, [clip(50, 'none'), ['Filler', { ComponentLength: 25 }], clip(25, 'none')]]] },
  });
  const { tracks, end, isMaterial } = timeline(model);
  assert.equal(isMaterial, true);
  assert.deepEqual(shape(tracks[0][0]), [['clip', 0, 2], ['filler', 2, 3], ['clip', 3, 4]]);
  assert.equal(toNumber(end), 4);
});

test('what a clip plays is shown within the time of the clip, with its whole length', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, [clip(50, 'tape', 100)]]] },
    tape: { tracks: [['TimelineTrack', { EditRate: { numerator: 50, denominator: 1 }, Origin: 0 }, [['Timecode', { ComponentLength: 432000 * 50 }]]]] },
  });
  const [[, tape]] = timeline(model).tracks;
  assert.deepEqual(shape(tape), [['component', 0, 2]]);
  assert.equal(tape.segments[0].isCut, true);
  assert.equal(toNumber(tape.segments[0].end) - toNumber(tape.segments[0].start), 432000);
});

test('a clip of one edit rate and its source of another end together', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', { EditRate: { numerator: 30000, denominator: 1001 }, Origin: 0 }, [clip(30000, 'file')]]] },
    file: { tracks: [['TimelineTrack', { EditRate: { numerator: 48000, denominator: 1 }, Origin: 0 }, [clip(48048000, 'none')]]] },
  });
  const [[first, source]] = timeline(model).tracks;
  assert.deepEqual(source.segments[0].end, first.segments[0].end);
  assert.equal(source.segments[0].isCut, false);
});

test('clips of one track show what each of them plays of it', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, [clip(25, 'file', 100), clip(25, 'other'), clip(50, 'file')]]] },
    file: { tracks: [['TimelineTrack', rate, [clip(500, 'none')]]] },
    other: { tracks: [['TimelineTrack', rate, [clip(25, 'file', 200)]]] },
  });
  const [[, file, other, ...rest]] = timeline(model).tracks;
  assert.deepEqual(shape(file), [['clip', 0, 1], ['clip', 2, 4]]);
  assert.deepEqual(shape(other), [['clip', 1, 2]]);
  assert.deepEqual(rest, []);
});

test('an origin moves what is played', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, [clip(25, 'file')]]] },
    file: { tracks: [['TimelineTrack', { ...rate, Origin: 25 }, [['Filler', { ComponentLength: 25 }], clip(25, 'none')]]] },
  });
  const [[, source]] = timeline(model).tracks;
  assert.deepEqual(shape(source), [['clip', 0, 1]]);
});

test('static, event and open-ended tracks are shown as such', () => {
  const model = clipOf({
    m: {
      class: 'MaterialPackage',
      tracks: [
        ['StaticTrack', {}, [['DescriptiveMarker', {}]]],
        ['EventTrack', { EventTrackEditRate: { numerator: 25, denominator: 1 } }, [['CommentMarker', { EventPosition: 50 }]]],
        ['TimelineTrack', rate, [clip(-1, 'none')]],
      ],
    },
  });
  const { tracks } = timeline(model);
  assert.deepEqual(shape(tracks[0][0]), [['static', 0, null]]);
  assert.deepEqual(shape(tracks[1][0]), [['event', 2, 2]]);
  assert.deepEqual(shape(tracks[2][0]), [['clip', 0, null]]);
});

test('packages that play each other in a circle end', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, [clip(25, 'a')]]] },
    a: { tracks: [['TimelineTrack', rate, [clip(25, 'b')]]] },
    b: { tracks: [['TimelineTrack', rate, [clip(25, 'a')]]] },
  });
  assert.equal(timeline(model).tracks[0].length, 3);
});

test('of tracks that all play each other many times over only some are followed', () => {
  const names = Array.from({ length: 60 }, (_, i) => `p${i}`);
  const all = names.flatMap((name) => Array.from({ length: 8 }, () => clip(25, name)));
  const packages = Object.fromEntries(names.map((name) => [name, { tracks: [['TimelineTrack', rate, all]] }]));
  const model = clipOf({ m: { class: 'MaterialPackage', tracks: Array.from({ length: 60 }, () => ['TimelineTrack', rate, all]) }, ...packages });
  const pieces = timeline(model).tracks.flat().reduce((sum, { segments }) => sum + segments.length, 0);
  assert.ok(pieces < 60_000, String(pieces));
});

test('an axis has few ticks at round places', () => {
  assert.deepEqual(ticks(0.96, 8), [0, 0.2, 0.4, 0.6000000000000001, 0.8]);
  assert.deepEqual(ticks(3600, 8), [0, 600, 1200, 1800, 2400, 3000, 3600]);
  assert.ok(ticks(1e9, 8).length <= 9);
});

test('ticks closer than a second are at whole frames', () => {
  assert.deepEqual(ticks(0.08, 8, 25), [0, 0.04, 0.08]);
  assert.deepEqual(ticks(0.96, 8, 25), [0, 0.2, 0.4, 0.6000000000000001, 0.8]);
  for (const second of ticks(1.5, 8, 30000 / 1001)) {
    assert.ok(Math.abs((second * 30000) / 1001 - Math.round((second * 30000) / 1001)) < 1e-9);
  }
  assert.deepEqual(ticks(3600, 8, 25), ticks(3600, 8));
});

test('the material package is found whatever other packages call themselves', () => {
  const tracks = [['TimelineTrack', rate, [clip(25, 'none')]]];
  const model = clipOf({
    first: { tracks, packageID: 'same' },
    m: { class: 'MaterialPackage', tracks, packageID: 'same' },
    last: { tracks, packageID: 'same' },
  });
  const { isMaterial, material } = timeline(model);
  assert.equal(isMaterial, true);
  assert.equal(model.classOf(material), 'MaterialPackage');
});

test('a clip without a source is not taken for one of a package without an identifier', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, [['SourceClip', { ComponentLength: 25, SourceTrackID: 1 }]]]] },
    nameless: { tracks: [['TimelineTrack', rate, [clip(25, 'none')]]], packageID: null },
  });
  model.sets.forEach((set) => { if (set.properties?.PackageID === null) delete set.properties.PackageID; });
  assert.equal(timeline(model).tracks[0].length, 1);
});

test('of tracks with one number the first is played', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, [clip(25, 'file', 0, 7)]]] },
    file: {
      tracks: [
        ['TimelineTrack', { ...rate, TrackID: 7, TrackName: 'first' }, [clip(25, 'none')]],
        ['TimelineTrack', { ...rate, TrackID: 7, TrackName: 'last' }, [clip(25, 'none')]],
      ],
    },
  });
  const [[, played]] = timeline(model).tracks;
  assert.equal(model.property(played.track, 'TrackName'), 'first');
});

test('each track has its share of what is drawn, and the page says if that is not all', () => {
  const names = Array.from({ length: 60 }, (_, i) => `p${i}`);
  const all = names.flatMap((name) => Array.from({ length: 8 }, () => clip(25, name)));
  const packages = Object.fromEntries(names.map((name) => [name, { tracks: [['TimelineTrack', rate, all]] }]));
  const crowd = clipOf({ m: { class: 'MaterialPackage', tracks: Array.from({ length: 10 }, () => ['TimelineTrack', rate, all]) }, ...packages });
  const shown = timeline(crowd);
  for (const lanes of shown.tracks) assert.ok(lanes.length > 1, String(lanes.length));
  assert.equal(shown.isWhole, false);
  const small = clipOf({ m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, [clip(25, 'none')]]] } });
  assert.equal(timeline(small).isWhole, true);
});

test('of a long sequence no more is looked up than is drawn', () => {
  const model = clipOf({
    m: { class: 'MaterialPackage', tracks: [['TimelineTrack', rate, Array.from({ length: 3000 }, () => clip(25, 'none'))]] },
  });
  const find = model.places.get.bind(model.places);
  let looked = 0;
  model.places.get = (id) => {
    looked += 1;
    return find(id);
  };
  const [[lane]] = timeline(model).tracks;
  assert.deepEqual([lane.segments.length, lane.left], [500, 2500]);
  assert.ok(looked < 600, String(looked));
});
