// The board by hand and by keys: what is pressed, drawn, and chosen on it.

import { squareOf } from "./fen.mjs";

// A press that moves less than so many pixels is a click.
export const CLICK = 6;
// What steps through the game elsewhere on the page.
const GAME_KEYS = ["ArrowLeft", "ArrowRight", "Home", "End"];

export class BoardInput {
  #focus = 0;
  #press = null;
  // Whether the board was used by hand last. Then keys that step through the game do so, although
  // the press has put the focus on a square.
  #byHand = false;

  constructor(view) {
    this.view = view;
    const { root, cells } = view;
    cells.forEach((cell, place) => cell.addEventListener("focus", () => this.#setFocus(place)));
    root.addEventListener("pointerdown", (event) => this.#pressed(event));
    root.addEventListener("pointermove", (event) => this.#dragged(event));
    root.addEventListener("pointerup", (event) => this.#released(event));
    root.addEventListener("pointercancel", () => this.#letGo());
    root.addEventListener("keydown", (event) => this.#key(event));
    root.addEventListener("focusout", ({ relatedTarget }) => {
      this.#byHand = this.#byHand && root.contains(relatedTarget);
    });
  }

  /** Puts the keys on the board: on the square where they were. */
  focus() {
    this.view.cells[this.#focus].focus();
  }

  // By hand.

  /** The name of the square that is pointed at, or null beside the board. */
  squareAt(event) {
    const box = this.view.root.getBoundingClientRect();
    const column = Math.floor(((event.clientX - box.left) / box.width) * 8);
    const row = Math.floor(((event.clientY - box.top) / box.height) * 8);
    const inside = column >= 0 && column < 8 && row >= 0 && row < 8;
    return inside ? this.view.nameAt(8 * row + column) : null;
  }

  // Whether the piece that is chosen can go there.
  #isTarget(square) {
    const { selected, hooks } = this.view;
    return Boolean(selected) && Boolean(hooks.targets(selected)?.includes(square));
  }

  #pressed(event) {
    const square = this.squareAt(event);
    if (event.button !== 0 || !square || this.#press) {
      return;
    }
    this.#byHand = true;
    const piece = this.view.pieceOn(square);
    const mine = this.view.hooks.targets(square) !== null;
    const goes = this.#isTarget(square);
    // A piece of one's own that can be castled with is a target first.
    this.#press = { square, piece: mine && !this.view.hooks.clicked ? piece : null, event,
      moved: false, before: this.view.selected, goes };
    this.view.root.setPointerCapture(event.pointerId);
    if (mine && !goes && !this.view.hooks.clicked) {
      this.view.select(square);
    } else if (piece && !mine && !goes) {
      this.view.hooks.refused?.();
    }
  }

  #dragged(event) {
    const press = this.#press;
    if (!press?.piece || event.pointerId !== press.event.pointerId) {
      return;
    }
    const [dx, dy] = [event.clientX - press.event.clientX, event.clientY - press.event.clientY];
    if (!press.moved && Math.hypot(dx, dy) < CLICK) {
      return;
    }
    if (!press.moved) {
      press.moved = true;
      press.piece.classList.add("held");
      this.view.select(press.square);
    }
    const box = this.view.root.getBoundingClientRect();
    const x = event.clientX - box.left - box.width / 16;
    const y = event.clientY - box.top - box.height / 16;
    press.piece.style.transform = `translate(${x}px, ${y}px)`;
    const over = this.squareAt(event);
    this.view.cells.forEach((cell) => cell.classList.toggle("over", cell.dataset.square === over));
  }

  #released(event) {
    const press = this.#press;
    if (!press || event.pointerId !== press.event.pointerId) {
      return;
    }
    const to = this.squareAt(event);
    this.#letGo();
    if (press.moved) {
      if (to && to !== press.square && this.view.hooks.targets(press.square)?.includes(to)) {
        this.#move(press.square, to);
      } else if (!to && this.view.hooks.dropped) {
        this.view.hooks.dropped(press.square);
      } else if (to !== press.square) {
        this.view.select(null);
      }
    } else if (press.goes) {
      this.#move(press.before, press.square);
    } else if (this.view.hooks.clicked) {
      this.view.hooks.clicked(press.square);
    } else if (press.before === press.square || !press.piece) {
      this.view.select(null);
    }
  }

  #letGo() {
    if (this.#press?.moved) {
      this.#press.piece.classList.remove("held");
      this.view.put(this.#press.piece, squareOf(this.#press.piece.dataset.square));
      this.view.cells.forEach((cell) => cell.classList.remove("over"));
    }
    this.#press = null;
  }

  #move(from, to) {
    this.view.select(null);
    this.view.hooks.move(from, to);
  }

  // By keys.

  #setFocus(place) {
    this.view.cells[this.#focus].tabIndex = -1;
    this.view.cells[place].tabIndex = 0;
    this.#focus = place;
  }

  #key(event) {
    const [row, column] = [Math.floor(this.#focus / 8), this.#focus % 8];
    const steps = { ArrowUp: [-1, 0], ArrowDown: [1, 0], ArrowLeft: [0, -1], ArrowRight: [0, 1],
      Home: [0, -column], End: [0, 7 - column] };
    if (event.ctrlKey || event.altKey || event.metaKey) {
      return;
    }
    // A box has no game to step through.
    if (this.#byHand && GAME_KEYS.includes(event.key) && !this.view.root.closest("dialog")) {
      return;
    }
    this.#byHand = false;
    if (event.key in steps) {
      const [down, right] = steps[event.key];
      const within = (number) => Math.min(7, Math.max(0, number));
      this.view.cells[8 * within(row + down) + within(column + right)].focus();
    } else if (event.key === "Enter" || event.key === " ") {
      this.#chosen(this.view.nameAt(this.#focus));
    } else if (event.key === "Escape" && this.view.selected) {
      this.view.select(null);
    } else {
      return;
    }
    event.preventDefault();
    event.stopPropagation();
  }

  #chosen(square) {
    if (this.view.hooks.clicked) {
      this.view.hooks.clicked(square);
    } else if (this.#isTarget(square)) {
      this.#move(this.view.selected, square);
    } else {
      const mine = this.view.hooks.targets(square) !== null && square !== this.view.selected;
      this.view.select(mine ? square : null);
    }
  }
}
