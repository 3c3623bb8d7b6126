// Boxes in front of the page. Each is made when it is asked for, and answers when it is closed.

import { button, drawn, make } from "./dom.mjs";

/**
 * Shows a box.
 * @param build is called with the box's body and a function that closes it with a value.
 * @return the value, or null where the box was left.
 */
export function openBox(texts, title, build) {
  return new Promise((resolve) => {
    const heading = make("h2", { id: "box-title" }, title);
    const box = make("dialog", { class: "box", "aria-labelledby": "box-title" }, heading);
    let answer = null;
    const close = (value) => {
      answer = value;
      box.close();
    };
    box.addEventListener("close", () => {
      box.remove();
      resolve(answer);
    });
    // A click beside the box leaves it.
    box.addEventListener("pointerdown", (event) => {
      const { left, right, top, bottom } = box.getBoundingClientRect();
      const { clientX: x, clientY: y } = event;
      if (event.target === box && (x < left || x > right || y < top || y > bottom)) {
        box.close();
      }
    });
    build(box, close);
    document.body.append(box);
    box.showModal();
  });
}

/** Asks a question by the texts of a key with title, words and yes: whether the answer is yes. */
export const ask = (texts, key) => openBox(texts, texts.get(key + ".title"), (box, close) => {
  box.append(make("p", {}, texts.get(key + ".words")), make("p", { class: "buttons" },
    button(texts.get(key + ".yes"), { class: "main" }, () => close(true)),
    button(texts.get("cancel"), {}, () => close(null))));
});

/** Which piece a pawn becomes: the letter of one of the moves. */
export const askPromotion = (texts, moves, side) =>
  openBox(texts, texts.get("promotion"), (box, close) => {
    const row = make("p", { class: "promotions" });
    for (const letter of "qrbn") {
      const move = moves.find((each) => each.promotion === letter);
      if (move) {
        const name = "piece-" + (side === "white" ? letter.toUpperCase() : letter);
        const picture = drawn("svg", { viewBox: "0 0 40 40", "aria-hidden": "true" });
        picture.append(drawn("use", { href: "#" + name }));
        const choice = button("", { "aria-label": texts.get("kind." + letter.toUpperCase()),
          "data-promotion": letter }, () => close(move));
        choice.append(picture);
        row.append(choice);
      }
    }
    box.append(row, make("p", { class: "buttons" },
      button(texts.get("cancel"), {}, () => close(null))));
  });

const PARTS = [
  ["about.engine", "MIT"],
  ["about.core", "MIT"],
  ["about.pieces", "MIT"],
  ["about.page", "MIT"],
  ["about.musl", "MIT"],
  ["about.libcxx", "Apache-2.0 WITH LLVM-exception"],
  ["about.rapidjson", "MIT"],
];

const aboutBox = (texts, version) => (box, close) => {
  const heading = (key) => make("th", { scope: "col" }, texts.get(key));
  const rows = PARTS.map(([key, licence]) =>
    make("tr", {}, make("td", {}, texts.get(key)), make("td", {}, licence)));
  box.append(make("p", {}, texts.get("about.words", { version })),
    make("p", {}, texts.get("about.private")),
    make("table", {}, make("thead", {}, make("tr", {}, heading("about.part"),
      heading("about.licence"))), make("tbody", {}, ...rows)),
    make("p", {}, make("a", { href: "LICENSE.txt" }, texts.get("about.text"))),
    make("h3", {}, texts.get("about.keys")), make("p", {}, texts.get("about.keys.words")),
    make("p", { class: "buttons" },
      button(texts.get("close"), { class: "main" }, () => close(null))));
};

export const showAbout = (texts, version) =>
  openBox(texts, texts.get("about.title"), aboutBox(texts, version));
