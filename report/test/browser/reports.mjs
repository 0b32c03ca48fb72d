import { spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath, pathToFileURL } from 'node:url';

const needed = (name) => {
  const value = process.env[name];
  if (!value) throw new Error(`${name} is not set; tests/report/CMakeLists.txt says to what`);
  return value;
};

const command = needed('CORVID_COMMAND');
const examples = needed('CORVID_EXAMPLES');
const generator = needed('CORVID_GENERATE_CLIP');
const samples = process.env.CORVID_SAMPLES ?? join(fileURLToPath(new URL('../../..', import.meta.url)), '../shared/samples');

export const hostile = {
  title: '</script><img src=x onerror=alert(1)><!--\u202etxt.exe\u2069&amp;',
  shown: '</script><img src=x onerror=alert(1)><!--U+202Etxt.exeU+2069&amp;',
};

/** A folder for the clips and reports of a run. */
export class Work {
  constructor() {
    this.folder = mkdtempSync(join(tmpdir(), 'corvid-report-'));
  }

  remove() {
    rmSync(this.folder, { recursive: true });
  }

  run(program, ...args) {
    const done = spawnSync(program, args, { encoding: 'utf8' });
    if (done.status !== 0) throw new Error(`${program} ${args.join(' ')}: ${done.stderr}`);
    return done.stdout;
  }

  /** Writes the report of a clip, once for a name; its address. */
  report(clip, name) {
    const path = join(this.folder, `${name}.html`);
    if (!existsSync(path)) this.run(command, 'report', clip, '-o', path);
    return pathToFileURL(path).href;
  }

  /** Writes the report of a clip beside one before it. */
  comparison(before, after, name) {
    const path = join(this.folder, `${name}.html`);
    this.run(command, 'report', before, after, '-o', path);
    return pathToFileURL(path).href;
  }

  /** The sample with another name, and one with another Origin and name. */
  edits() {
    const edit = (name, ...changes) => {
      const path = this.sample(undefined, name);
      this.run(command, 'set', path, ...changes, '--no-identification', '--in-place');
      return path;
    };
    return [
      edit('first.mxf', 'MaterialPackage/PackageName=First'),
      edit('second.mxf', 'MaterialPackage/PackageName=Second', 'MaterialPackage/TimelineTrack[TrackID=2]/TrackName=V1'),
    ];
  }

  generated(sets) {
    const path = join(this.folder, `${sets}.mxf`);
    if (!existsSync(path)) this.run(generator, String(sets), path);
    return path;
  }

  /** The sample with other bytes. */
  sample(change = (bytes) => bytes, name = 'sample.mxf') {
    const path = join(this.folder, name);
    writeFileSync(path, change(readFileSync(join(examples, 'sample.mxf'))));
    return path;
  }

  damaged() {
    return this.sample((bytes) => bytes.subarray(0, 4000), 'damaged.mxf');
  }

  /** The sample, a track of which has TrackID twice and another StoredHeight: both take the place of TrackNumber. */
  odd() {
    return this.sample((bytes) => {
      const copy = Buffer.from(bytes);
      const numbers = Buffer.from('48040004', 'hex');
      const first = copy.indexOf(numbers);
      const second = copy.indexOf(numbers, first + 1);
      copy.writeUInt16BE(0x4801, first);
      copy.writeUInt16BE(0x3202, second);
      return copy;
    }, 'odd.mxf');
  }

  /** The sample with two tracks of one InstanceUID. */
  ambiguous() {
    return this.sample((bytes) => {
      const copy = Buffer.from(bytes);
      const name = Buffer.from('3c0a0010adab44242f254dc792ff000900000001', 'hex');
      copy[copy.indexOf(name) + name.length - 1] = 0;
      return copy;
    }, 'ambiguous.mxf');
  }

  hostile() {
    const path = this.sample(undefined, 'hostile.mxf');
    this.run(command, 'set', path, `MaterialPackage/PackageName=${hostile.title}`, '--in-place');
    return path;
  }
}

/** Real clips of the kinds that people look at; those that are there. */
export function realClips() {
  const kinds = {
    small: join(examples, 'sample.mxf'),
    imf: join(samples, 'ebu__bmx-imf-audio-mca.mxf'),
    as11: join(samples, 'ebu__bmx-as11-ukdpp-avci100-smallfill.mxf'),
    opatom: join(samples, 'ffmpeg__ff-opatom-dnxhd.mxf'),
    dark: join(samples, 'avid-technology-in__test-title.mxf'),
  };
  return Object.entries(kinds).filter(([, path]) => existsSync(path));
}
