import * as R from './rational.js';

const longestChain = 16;
const mostTracks = 64;
const mostSegments = 500;
/** Of all tracks together, each its share: files in which everything plays everything else would take for ever. */
const mostPieces = 20_000;

const componentKinds = { Filler: 'filler', Sequence: 'sequence' };
const eventClasses = /Event|Marker/;

/** The first components of a track, and how many more it has: those of its sequence, or its only segment. */
function components(model, track) {
  const [segment] = model.targets(track, 'TrackSegment', 1);
  if (segment === undefined) return { segment, list: [], left: 0 };
  const list = model.targets(segment, 'ComponentObjects', mostSegments);
  const all = model.property(segment, 'ComponentObjects')?.length ?? 0;
  return { segment, list: list.length > 0 ? list : [segment], left: Math.max(0, all - mostSegments) };
}

const rateOf = (model, track) =>
  model.property(track, 'EditRate') ?? model.property(track, 'EventTrackEditRate');

/** A length in edit units; null where it is not stated (-1, or none at all). */
function lengthOf(model, component) {
  const length = model.property(component, 'ComponentLength');
  return length === undefined || Number(length) < 0 ? null : length;
}

function classOfTrack(model, track) {
  const name = model.classOf(track);
  if (name === 'StaticTrack') return 'static';
  return name === 'EventTrack' ? 'event' : 'timeline';
}

/** A component as a piece of time from a start; its end is null where its length is not stated. */
function segment(model, place, start, rate) {
  const units = lengthOf(model, place);
  const length = units === null ? null : R.seconds(units, rate);
  const name = model.classOf(place);
  return {
    place,
    kind: componentKinds[name] ?? (name === 'SourceClip' ? 'clip' : 'component'),
    name,
    start,
    end: length === null ? null : R.add(start, length),
  };
}

/** The lane of a track, without what it plays. */
function lane(model, track, origin) {
  const rate = rateOf(model, track);
  const kind = classOfTrack(model, track);
  const { segment: whole, list, left } = components(model, track);
  const result = { track, kind, rate, segments: [], left, total: null };
  if (kind === 'event') {
    for (const place of list) {
      const at = R.seconds(model.property(place, 'EventPosition') ?? 0, rate);
      const units = lengthOf(model, place);
      const length = units === null ? null : R.seconds(units, rate);
      const start = at === null ? R.zero : at;
      result.segments.push({
        place,
        kind: 'event',
        name: model.classOf(place),
        start,
        end: length === null ? start : R.add(start, length),
      });
    }
  } else if (kind === 'timeline') {
    let start = origin;
    for (const place of list) {
      const piece = segment(model, place, start, rate);
      result.segments.push(piece);
      if (piece.end === null) break;
      start = piece.end;
    }
    const units = whole === undefined ? null : lengthOf(model, whole);
    result.total = units === null ? null : R.seconds(units, rate);
  } else {
    result.segments = list.map((place) => ({
      place,
      kind: 'static',
      name: model.classOf(place),
      start: R.zero,
      end: null,
    }));
  }
  return result;
}

/** All packages, those with an identifier by it, and their tracks by theirs. Of several the first counts. */
function packageIndex(model) {
  const all = [];
  const packages = new Map();
  const [storage] = model.roots.slice(0, 1).flatMap((root) => model.targets(root, 'ContentStorageObject'));
  for (const place of storage === undefined ? [] : model.targets(storage, 'Packages')) {
    const tracks = model.targets(place, 'PackageTracks');
    const id = model.property(place, 'PackageID');
    const byID = new Map();
    for (const track of tracks) {
      const number = Number(model.property(track, 'TrackID'));
      if (!byID.has(number)) byID.set(number, track);
    }
    all.push({ place, tracks, byID });
    if (id !== undefined && !packages.has(String(id))) packages.set(String(id), all.at(-1));
  }
  return { all, packages };
}

/** The piece of an ancestor's track that a source clip plays, clipped to the time of that clip. */
function ancestor(model, packages, clip, clipRate) {
  const source = packages.get(String(model.property(clip.place, 'SourcePackageID')));
  const track = source?.byID.get(Number(model.property(clip.place, 'SourceTrackID')));
  if (track === undefined) return null;
  const rate = rateOf(model, track);
  const offset = R.seconds(model.property(clip.place, 'StartPosition') ?? 0, clipRate);
  const origin = R.seconds(model.property(track, 'Origin') ?? 0, rate) ?? R.zero;
  if (offset === null) return null;
  const begin = R.subtract(R.subtract(clip.start, offset), origin);
  const result = lane(model, track, begin);
  result.package = source.place;
  result.looked = result.segments.length + 1;
  result.segments = result.segments
    .filter((piece) => piece.end === null || R.isLess(clip.start, piece.end))
    .filter((piece) => clip.end === null || R.isLess(piece.start, clip.end))
    .map((piece) => clipped(piece, clip));
  return result;
}

/** A piece within the time of another; what is left of it on either side is told. */
function clipped(piece, { start, end }) {
  const last = piece.end === null ? end : end === null ? piece.end : R.lesser(piece.end, end);
  return {
    ...piece,
    shownStart: R.greater(piece.start, start),
    shownEnd: last,
    isCut: R.isLess(piece.start, start) || (end !== null && piece.end !== null && R.isLess(end, piece.end)),
  };
}

/** The clips of a lane, as far as they are shown. */
const clipsOf = ({ segments, rate, kind }) =>
  kind !== 'timeline'
    ? []
    : segments
        .filter((piece) => piece.kind === 'clip')
        .map((piece) => ({ ...piece, start: piece.shownStart ?? piece.start, end: piece.shownStart ? piece.shownEnd : piece.end, rate }));

/**
 * The lanes of the tracks that a lane plays, of those that these play, and so on; each track once, as far as
 * the budget goes.
 */
function ancestors(model, packages, first, budget) {
  const lanes = [];
  const seen = new Set([first.track]);
  let clips = clipsOf(first);
  for (let depth = 1; depth <= longestChain && clips.length > 0 && lanes.length < mostTracks; depth += 1) {
    const played = new Map();
    for (const clip of clips) {
      if (budget.pieces <= 0) {
        budget.isEnough = false;
        break;
      }
      const next = ancestor(model, packages, clip, clip.rate);
      if (next === null) continue;
      budget.pieces -= next.looked;
      if (seen.has(next.track)) continue;
      const known = played.get(next.track);
      if (known) known.segments.push(...next.segments);
      else played.set(next.track, { ...next, depth });
    }
    const found = [...played.values()];
    for (const { track } of found) seen.add(track);
    lanes.push(...found);
    clips = found.flatMap(clipsOf).slice(0, mostSegments);
  }
  return lanes;
}

/**
 * The tracks of the material package, each with the tracks that it plays, and the time that all of
 * them take; null where there is no such package.
 */
export function timeline(model) {
  const { all, packages } = packageIndex(model);
  const material = all.find(({ place }) => model.classOf(place) === 'MaterialPackage');
  const shown = material ?? all[0];
  if (shown === undefined) return null;
  const budget = { pieces: 0, isEnough: true };
  const drawn = shown.tracks.slice(0, mostTracks);
  const tracks = drawn.map((track) => {
    budget.pieces = Math.max(0, budget.pieces) + mostPieces / drawn.length;
    const first = { ...lane(model, track, R.zero), package: shown.place, depth: 0 };
    return [first, ...ancestors(model, packages, first, budget)];
  });
  let end = R.zero;
  for (const [first] of tracks) {
    for (const piece of first.segments) if (piece.end !== null) end = R.greater(end, piece.end);
  }
  return { material: shown.place, isMaterial: material !== undefined, tracks, end, left: shown.tracks.length - tracks.length, isWhole: budget.isEnough };
}

const niceSteps = [0.001, 0.002, 0.005, 0.01, 0.02, 0.05, 0.1, 0.2, 0.5, 1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 14400, 43200, 86400];

const niceFrames = [1, 2, 5, 10, 20, 50];

/**
 * Seconds of the ticks of an axis, at most so many. With a rate, those closer than a second are at whole
 * frames, which have a timecode.
 */
export function ticks(end, most, rate) {
  const nice = niceSteps.find((each) => end / each <= most) ?? end / most;
  const frames = nice < 1 && rate && niceFrames.find((each) => (end * rate) / each <= most);
  const step = frames ? frames / rate : nice;
  const result = [];
  for (let i = 0; i * step <= end && result.length <= most; i += 1) result.push(i * step);
  return result;
}
