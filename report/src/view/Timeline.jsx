import { useMemo } from 'preact/hooks';
import { linkTo } from '../data/model.js';
import { count } from '../data/numbers.js';
import { printable } from '../data/printable.js';
import * as R from '../data/rational.js';
import { clock, frameRate, timecode } from '../data/timecode.js';
import { ticks, timeline } from '../data/timeline.js';
import { textOf } from '../data/values.js';
import { Text } from './Text.jsx';

const mostTicks = 8;

/** The timecode of the clip's first frame, with what it takes to count on. */
function startOf(data) {
  const { start } = data.summary;
  if (!start) return null;
  const tracks = data.summary.packages.flatMap((each) => each.tracks);
  const track = tracks.find(({ timecode: code }) => code?.start === start.timecode);
  const rate = track && frameRate(track.timecode, track.editRate);
  return rate && {
    first: track.timecode.startFrame,
    framesPerSecond: track.timecode.framesPerSecond,
    dropFrame: track.timecode.dropFrame,
    rate,
  };
}

/** Whether the words at a tick have room before the end of the axis: always, not on phones, never. */
const roomOf = (place) => (place > 0.93 ? ' cramped' : place > 0.78 ? ' wide-only' : '');

function Axis({ end, start }) {
  return (
    <div class="axis" aria-hidden="true">
      {ticks(end, mostTicks, start?.rate).map((second) => (
        <span key={second} class={`tick${roomOf(second / end)}`} style={{ left: `${(100 * second) / end}%` }}>
          {clock(second)}
          {start && <small>{timecode(start.first + Math.round(second * start.rate), start)}</small>}
        </span>
      ))}
    </div>
  );
}

/** What a segment says of itself where there is room. */
function labelOf(piece) {
  if (piece.kind === 'filler' || piece.kind === 'static') return piece.kind;
  if (piece.end === null) return `${piece.name}, open-ended`;
  return piece.isCut ? `${piece.name} of ${clock(R.toNumber(R.subtract(piece.end, piece.start)))}` : piece.name;
}

/** The same with its time and what people say of it. */
function wordsOf(model, piece) {
  const parts = [labelOf(piece)];
  if (piece.kind === 'static') parts.push(piece.name);
  else if (piece.kind === 'event') parts.push(`event at ${clock(R.toNumber(piece.start))}`);
  else if (piece.end !== null && !piece.isCut) parts.push(clock(R.toNumber(R.subtract(piece.end, piece.start))));
  const comment = model.property(piece.place, 'EventComment');
  if (comment) parts.push(printable(textOf(comment)));
  return parts.join(', ');
}

function Segment({ model, piece, end }) {
  const start = piece.shownStart ?? piece.start;
  const stop = piece.shownStart ? piece.shownEnd : piece.end;
  const whole = R.toNumber(end) || 1;
  const from = Math.max(0, R.toNumber(start) / whole);
  const to = stop === null || stop === undefined ? 1 : Math.min(1, R.toNumber(stop) / whole);
  const words = wordsOf(model, piece);
  const isPoint = piece.kind === 'event' && to <= from;
  return (
    <a
      href={linkTo(model.sets[piece.place])}
      class={`segment ${piece.kind}${piece.end === null ? ' open' : ''}${piece.isCut ? ' cut' : ''}${isPoint ? ' point' : ''}`}
      title={words}
      aria-label={words}
      style={{ left: `${100 * from}%`, width: isPoint ? undefined : `${100 * Math.max(0, to - from)}%` }}
    >
      {!isPoint && <span>{labelOf(piece)}</span>}
    </a>
  );
}

/** What people call a track: its name, else what it is about. */
function nameOfTrack(model, lane) {
  const id = String(model.property(lane.package, 'PackageID'));
  const number = model.property(lane.track, 'TrackID');
  const known = model.data.summary.packages.find((each) => each.id === id)?.tracks.find((each) => each.id === number);
  return model.property(lane.track, 'TrackName') || known?.kind || 'Track';
}

function Lane({ model, lane, end }) {
  const { depth } = lane;
  const packageName = model.property(lane.package, 'PackageName');
  return (
    <div class={`lane depth${Math.min(depth, 3)}`}>
      <div class="label">
        <a href={linkTo(model.sets[lane.track])}>
          <Text value={nameOfTrack(model, lane)} /> <span class="quiet">{textOf(model.property(lane.track, 'TrackID'))}</span>
        </a>
        {depth > 0 && (
          <span class="quiet">
            {' '}
            of <Text value={packageName || model.classOf(lane.package)} />
          </span>
        )}
      </div>
      <div class="bar">
        {lane.segments.map((piece, i) => (
          <Segment key={i} model={model} piece={piece} end={end} />
        ))}
        {lane.segments.length === 0 && <span class="quiet">Its components are not in the file</span>}
        {lane.left > 0 && <span class="left">and {count(lane.left)} more</span>}
      </div>
    </div>
  );
}

/** When the tracks of the material package play what. */
export function Timeline({ model, data }) {
  const shown = useMemo(() => timeline(model), [model]);
  if (shown === null || shown.tracks.length === 0) return null;
  const end = R.toNumber(shown.end) > 0 ? shown.end : R.rational(1);
  const hasTime = R.toNumber(shown.end) > 0;
  return (
    <section class="timeline" aria-labelledby="timeline-heading">
      <h2 id="timeline-heading">
        Timeline{' '}
        <span class="quiet">
          {shown.isMaterial ? 'of the material package' : `of the ${model.classOf(shown.material)}`}
          {model.comparison && <> of <Text value={data.clip.name} /></>}
        </span>
      </h2>
      <div class="lanes">
        {hasTime && (
          <div class="lane axis-lane">
            <div class="label" />
            <Axis end={R.toNumber(end)} start={startOf(data)} />
          </div>
        )}
        {shown.tracks.map((lanes) =>
          lanes.map((lane) => <Lane key={`${lanes[0].track}-${lane.track}`} model={model} lane={lane} end={end} />),
        )}
      </div>
      {shown.left > 0 && <p class="quiet">{count(shown.left)} more tracks are not drawn</p>}
      {!shown.isWhole && <p class="quiet">Not everything that these tracks play is drawn</p>}
    </section>
  );
}
