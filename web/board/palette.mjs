// The pieces that a position is set up with: chosen and put by clicks, or drawn onto the board.

import { CLICK } from "./board_input.mjs";
import { button, drawn, make } from "./dom.mjs";

const LETTERS = "KQRBNPkqrbnp";

export class Palette {
  // What is drawn from here onto the board: where it was pressed, and its picture when it moves.
  #press = null;

  /**
   * @param choose is called with the letter that clicks on the board put from now on, with "x" for
   * none, and with null when they move pieces.
   * @param drop is called with a letter or "x" and the event that ended its way.
   */
  constructor(texts, choose, drop) {
    this.choose = choose;
    this.drop = drop;
    this.root = make("div", { class: "palette", role: "group",
      "aria-label": texts.get("setup.pieces") });
    // Another press: what was before is over.
    this.root.addEventListener("pointerdown", () => (this.#press = null), { capture: true });
    this.#add(null, texts.get("setup.move"), "✥");
    for (const letter of LETTERS) {
      const picture = drawn("svg", { viewBox: "0 0 40 40", "aria-hidden": "true" });
      picture.append(drawn("use", { href: "#piece-" + letter }));
      this.#add(letter, texts.get("piece." + letter), picture);
    }
    this.#add("x", texts.get("setup.remove"), "✕");
  }

  #add(tool, name, picture) {
    const one = button("", { "aria-label": name, title: name,
      "aria-pressed": String(tool === null) }, 
      (event) => this.#chosen(event, one, tool));
    one.append(picture);
    this.root.append(one);
    if (tool) {
      one.addEventListener("pointerdown", (event) => this.#pressed(event, one));
      one.addEventListener("pointermove", (event) => this.#moved(event, picture));
      one.addEventListener("pointerup", (event) => this.#released(event, tool));
      one.addEventListener("pointercancel", () => this.#letGo());
    }
  }

  #chosen(event, one, tool) {
    // The end of a way is no choice; keys, which click without a count, always are.
    if (this.#press?.moved && event.detail > 0) {
      return;
    }
    this.root.querySelectorAll("button").forEach((each) =>
      (each.ariaPressed = String(each === one)));
    this.choose(tool);
  }

  #pressed(event, one) {
    if (event.button === 0) {
      this.#press = { x: event.clientX, y: event.clientY, held: null, moved: false };
      one.setPointerCapture(event.pointerId);
    }
  }

  #moved({ clientX, clientY, buttons }, picture) {
    const press = this.#press;
    if (!press || !buttons ||
        (!press.moved && Math.hypot(clientX - press.x, clientY - press.y) < CLICK)) {
      return;
    }
    press.moved = true;
    if (!press.held) {
      press.held = make("div", { class: "carried" });
      press.held.append(typeof picture === "string" ? picture : picture.cloneNode(true));
      this.root.append(press.held);
    }
    press.held.style.left = clientX + "px";
    press.held.style.top = clientY + "px";
  }

  #released(event, tool) {
    const moved = this.#press?.moved;
    this.#letGo();
    if (moved) {
      // A click may come behind it.
      this.#press = { moved };
      this.drop(tool, event);
    }
  }

  #letGo() {
    this.#press?.held?.remove();
    this.#press = null;
  }
}
