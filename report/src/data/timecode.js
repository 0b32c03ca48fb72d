const two = (number) => String(number).padStart(2, '0');

/** Frames as a timecode counts them: drop frame leaves out numbers, not frames (SMPTE ST 12-1). */
export function timecode(frames, { framesPerSecond, dropFrame }) {
  if (!(framesPerSecond > 0)) return String(frames);
  let number = frames;
  if (dropFrame && framesPerSecond % 30 === 0) {
    const dropped = framesPerSecond / 15;
    const perMinute = 60 * framesPerSecond - dropped;
    const perTenMinutes = 10 * perMinute + dropped;
    const tens = Math.floor(number / perTenMinutes);
    const rest = number % perTenMinutes;
    const minutes = rest < dropped ? 0 : Math.floor((rest - dropped) / perMinute);
    number += dropped * (9 * tens + minutes);
  }
  const second = Math.floor(number / framesPerSecond);
  const separator = dropFrame ? ';' : ':';
  const hours = Math.floor(second / 3600) % 24;
  return (
    `${two(hours)}:${two(Math.floor(second / 60) % 60)}:${two(second % 60)}` +
    `${separator}${two(number % framesPerSecond)}`
  );
}

/**
 * The frames of a timecode in a second: 30 are 29.97 where the edit rate of its track is 30000/1001, or
 * 60000/1001, or so many samples of sound for each of such frames. Null where it does not count frames.
 */
export function frameRate({ framesPerSecond }, editRate) {
  if (!(framesPerSecond > 0)) return null;
  const rate = editRate && editRate.denominator > 0 ? editRate.numerator / editRate.denominator : 0;
  if (!(rate > 0)) return framesPerSecond;
  const isFaster = rate > framesPerSecond;
  const times = Math.round(isFaster ? rate / framesPerSecond : framesPerSecond / rate);
  const meant = isFaster ? rate / times : rate * times;
  return Math.abs(meant - framesPerSecond) <= framesPerSecond / 500 ? meant : framesPerSecond;
}

/** Seconds as a clock shows them: "120:00:00.5" */
export function clock(exact) {
  const seconds = Math.round(exact * 1000) / 1000;
  const hours = Math.floor(seconds / 3600);
  const minutes = Math.floor(seconds / 60) % 60;
  const rest = Number((seconds % 60).toFixed(3));
  if (hours === 0 && minutes === 0) return `${rest} s`;
  const [whole, part] = String(rest).split('.');
  return `${hours > 0 ? `${hours}:${two(minutes)}` : minutes}:${two(whole)}${part ? `.${part}` : ''}`;
}
