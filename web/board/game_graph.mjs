// The chances through a game: light is White's share, dark is Black's. A slider chooses a position.

import { drawn, find, make } from "./dom.mjs";
import { MARK_CLASSES } from "./moves_view.mjs";

const between = (least, value, most) => Math.min(Math.max(value, least), most);

export class GameGraph {
  /** @param choose is called with a half-move. */
  constructor(app, choose) {
    this.app = app;
    this.root = find("graph");
    this.last = 0;
    const at = (event) => {
      const box = this.root.getBoundingClientRect();
      const ply = Math.round(((event.clientX - box.left) / box.width) * this.last);
      choose(between(0, ply, this.last));
    };
    this.root.addEventListener("pointerdown", (event) => {
      at(event);
      if (event.pointerType === "mouse") {
        this.root.setPointerCapture(event.pointerId);
      }
    });
    this.root.addEventListener("pointermove", (event) => {
      if (event.buttons === 1 && event.pointerType === "mouse") {
        at(event);
      }
    });
    this.root.addEventListener("keydown", (event) => {
      const { ply } = app.view;
      const goals = { ArrowLeft: ply - 1, ArrowDown: ply - 1, ArrowRight: ply + 1,
        ArrowUp: ply + 1, Home: 0, End: this.last };
      if (event.key in goals && !(event.ctrlKey || event.altKey || event.metaKey)) {
        choose(goals[event.key]);
        event.preventDefault();
      }
    });
    this.name();
  }

  name() {
    this.root.ariaLabel = this.app.texts.get("graph");
  }

  /** Draws what is known of a game of so many positions. */
  draw(records, count, marks, shareOf) {
    this.last = Math.max(count - 1, 1);
    const places = records.map((record, index) =>
      [(100 * index) / this.last, 100 - shareOf(record)]);
    const picture = drawn("svg", { viewBox: "0 0 100 100", preserveAspectRatio: "none",
      "aria-hidden": "true" });
    const line = places.map(([left, top]) => `L${left.toFixed(2)} ${top.toFixed(1)}`).join(" ");
    const end = places.at(-1)[0].toFixed(2);
    picture.append(drawn("path", { class: "area", d: `M0 100 ${line} L${end} 100 Z` }),
      drawn("path", { class: "even", d: "M0 50 H100", fill: "none",
        "vector-effect": "non-scaling-stroke" }));
    const dots = [...marks].map(([ply, mark]) => {
      const dot = make("span", { class: "dot " + MARK_CLASSES[mark], "aria-hidden": "true" }, mark);
      const [left, top] = places[ply] ?? places.at(-1);
      dot.style.left = between(2, left, 98) + "%";
      dot.style.top = between(8, top, 92) + "%";
      return dot;
    });
    this.cursor = make("div", { class: "cursor", "aria-hidden": "true" });
    // The marks lie above the cursor, which would hide the one that is chosen.
    this.root.replaceChildren(picture, this.cursor, ...dots);
    this.root.setAttribute("aria-valuemin", 0);
    this.root.setAttribute("aria-valuemax", count - 1);
  }

  /** @param share of White there; undefined where it is not known yet. */
  choose(ply, share) {
    this.cursor.style.left = (100 * ply) / this.last + "%";
    this.root.setAttribute("aria-valuenow", ply);
    const { texts, last } = this.app;
    const words = ply > 0 ? texts.san(last.sans[ply - 1]) : texts.get("where.start");
    const chances = share === undefined ? ""
      : ": " + texts.get("balance", { share: Math.round(share) });
    this.root.setAttribute("aria-valuetext", words + chances);
  }
}
