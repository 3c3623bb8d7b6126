// The list of the moves of the game, and the line that was tried beside it.

import { button, find, make, setText } from "./dom.mjs";
import { numbered, numberOf, sideToMove } from "./fen.mjs";

export const MARK_CLASSES = { "??": "blunder", "?": "mistake", "?!": "inaccuracy", "!": "only" };

export class MovesView {
  #drawn = "";

  /** @param choose is called with a ply, and @param step with a number of moves of the line. */
  constructor(texts, choose, step) {
    this.texts = texts;
    this.choose = choose;
    this.step = step;
  }

  /**
   * @param startFen of the game, @param sans of its moves, @param marks of its moves by ply,
   * @param ply the one that is chosen.
   */
  draw(startFen, sans, marks, ply) {
    const wanted = JSON.stringify([startFen, sans, [...marks], this.texts.language]);
    if (wanted !== this.#drawn) {
      this.#drawn = wanted;
      this.#fill(startFen, sans, marks);
    }
    const list = find("moves");
    list.querySelectorAll("button").forEach((each) => {
      const chosen = Number(each.dataset.ply) === ply;
      each.tabIndex = chosen || (ply === 0 && each.dataset.ply === "1") ? 0 : -1;
      if (chosen) {
        each.setAttribute("aria-current", "true");
        this.#reveal(list, each);
      } else {
        each.removeAttribute("aria-current");
      }
    });
    if (ply === 0) {
      list.scrollTop = 0;
    }
  }

  // Scrolls the list alone, and leaves the page where it is.
  #reveal(list, move) {
    const [box, own] = [list.getBoundingClientRect(), move.getBoundingClientRect()];
    if (own.top < box.top || own.bottom > box.bottom) {
      list.scrollTop += own.top - box.top - box.height / 2;
    }
  }

  #fill(startFen, sans, marks) {
    let number = numberOf(startFen);
    let white = sideToMove(startFen) === "white";
    const rows = [];
    let row = null;
    sans.forEach((san, index) => {
      if (white || !row) {
        row = make("li", {}, make("span", { class: "faint" }, number + "."));
        if (!white) {
          row.append(make("span", { class: "faint" }, "…"));
        }
        rows.push(row);
      }
      const move = button(this.texts.san(san), { "data-ply": index + 1 },
        () => this.choose(index + 1));
      const mark = marks.get(index + 1);
      if (mark) {
        move.append(make("span", { class: "mark " + MARK_CLASSES[mark] }, mark));
      }
      row.append(move);
      number += white ? 0 : 1;
      white = !white;
    });
    find("moves").replaceChildren(...rows);
    find("moves").hidden = rows.length === 0;
  }

  /** @param sans of the line that leaves the game at a position; none is no line. */
  drawLine(fen, sans, step, back) {
    const place = find("variation");
    place.hidden = sans.length === 0;
    if (!sans.length) {
      place.replaceChildren();
      return;
    }
    const moves = numbered(fen, this.texts.sans(sans)).flatMap((text, index) => [
      button(text, { "aria-pressed": String(index + 1 === step) },
        () => this.step(index + 1)), " "]);
    place.replaceChildren(
      make("span", { class: "faint" }, this.texts.get("variation") + " "), ...moves,
      button(this.texts.get("variation.leave"), { class: "back" }, back));
  }

  title(text) {
    setText(find("game-title"), text);
    find("game-title").hidden = !text;
  }
}
