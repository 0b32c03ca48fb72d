import { pieces } from '../data/printable.js';

/** A text of the file: isolated from the direction of what is around it, with codes for what can't be shown. */
export function Text({ value }) {
  return (
    <bdi>
      {pieces(String(value)).map((piece) =>
        piece.code ? (
          <code class="code" title="A character that can't be shown">
            {piece.code}
          </code>
        ) : (
          piece.text
        ),
      )}
    </bdi>
  );
}
