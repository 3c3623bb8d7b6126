// The lines of the engine. They change while they are read: what is there is written anew, so that
// a click or the focus of the keys is not lost with an element.

import { find, make, setText } from "./dom.mjs";

export class LinesView {
  #root = find("lines");

  /** @param step is called with a line and a move of it, from 0, and @param why with a line. */
  constructor(texts, step, why) {
    this.texts = texts;
    this.#root.addEventListener("click", ({ target }) => {
      const { line, step: move } = target.closest("button")?.dataset ?? {};
      if (move !== undefined) {
        step(Number(line), Number(move));
      } else if (line !== undefined) {
        why(Number(line));
      }
    });
  }

  /** @param lines each with a `score`, the text of its `moves`, and whether it is `asked` about. */
  draw(lines) {
    while (this.#root.children.length > lines.length) {
      this.#root.lastChild.remove();
    }
    lines.forEach((line, index) => {
      const row = this.#root.children[index] ?? this.#newRow(index);
      const [score, why, run] = row.children;
      setText(score, line.score);
      setText(why, this.texts.get("why"));
      why.title = this.texts.get("why.title");
      why.ariaLabel = `${this.texts.get("why")} ${line.moves[0]}`;
      why.ariaPressed = String(line.asked);
      this.#drawMoves(run, line.moves, index);
    });
  }

  #newRow(index) {
    const row = make("li", { class: "line" }, make("strong", { class: "score" }),
      make("button", { type: "button", class: "why", "data-line": index }),
      make("span", { class: "run" }));
    this.#root.append(row);
    return row;
  }

  #drawMoves(run, moves, line) {
    while (run.children.length > moves.length) {
      run.lastChild.remove();
      run.lastElementChild.remove();
    }
    moves.forEach((text, step) => {
      if (!run.children[step]) {
        run.append(make("button", { type: "button", "data-line": line, "data-step": step }), " ");
      }
      setText(run.children[step], text);
    });
  }

  /** @param least so many lines find room. @param stopped they are no longer searched. */
  style(least, stopped) {
    this.#root.classList.toggle("stopped", stopped);
    this.#root.style.minHeight = least ? `${2.6 * least}em` : "";
  }
}
