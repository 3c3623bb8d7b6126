// What makes the board pleasant: where the focus goes, what stays, languages, sounds, sizes, frames.
import assert from "node:assert/strict";
import { readFile } from "node:fs/promises";
import path from "node:path";
import { after, before, describe, test } from "node:test";
import { begin, clickMove, dragMove, end, folder, hasMoves, NARROW, openGame, ready, reviewGame, sansOf, says,
  typeMove, withBoard } from "./support.mjs";

const ITALIAN = "r1bqkbnr/pppp1ppp/2n5/4p3/2B1P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 3";
const SHORT_GAME = `[White "Ada"]
[Black "Grace"]

1. e4 e5 2. Bc4 Nc6 3. Qh5 Nf6 4. Qxf7# 1-0
`;
// A busy machine with one processor gives fewer frames than a quiet one, which gives 60 a second.
const LEAST_FRAMES = 15;
// On a phone fingers hit what is this high, in pixels.
const LEAST_HEIGHT = 24;

before(begin);
after(end);

const focused = (page, selector) => page.waitForFunction((wanted) =>
  document.activeElement.matches(wanted), selector);

const press = async (page, selector, key = "Enter") => {
  await page.focus(selector);
  await page.keyboard.press(key);
};

const hasLines = (page) => page.waitForSelector("#lines .line .run button");

describe("the focus", () => {
  test("it goes on where a control goes away", () => withBoard({}, async (page) => {
    await press(page, "#new-game button.main");
    await focused(page, "#board .cell");
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    await says(page, "where", "Your move");
    await press(page, "#take-back");
    await hasMoves(page, 0);
    await focused(page, "#board .cell");
    await press(page, "#resign");
    await page.waitForSelector("dialog[open]");
    await page.keyboard.press("Escape");
    await focused(page, "#resign");
    await page.keyboard.press("Enter");
    await page.waitForSelector("dialog[open]");
    await page.keyboard.press("Enter");
    await says(page, "play-words", "has resigned");
    await focused(page, "#again");
    await page.keyboard.press("Enter");
    await focused(page, "#new-game input");
  }));

  test("it stays where nobody asked for it", () => withBoard({}, async (page) => {
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    await page.focus("#resign");
    await page.mouse.click(2, 2);
    await focused(page, "body");
    await page.evaluate(() => (document.getElementById("resign").hidden = true));
    await page.evaluate(() => new Promise(requestAnimationFrame));
    await focused(page, "body");
  }));

  test("Escape lets a piece go, and leaves a box with a board", () => withBoard({}, async (page) => {
    await page.click("#panel-play .set-up");
    await page.click("dialog .cell[data-square=d1]");
    await page.waitForSelector("dialog .cell.selected");
    await page.keyboard.press("Escape");
    await page.waitForSelector("dialog .cell.selected", { state: "detached" });
    assert.equal(await page.locator("dialog[open]").count(), 1);
    await page.keyboard.press("Escape");
    await page.waitForSelector("dialog", { state: "detached" });
    await focused(page, "#panel-play .set-up");
  }));

  test("of an explained line it goes on in the panel", () => withBoard({}, async (page) => {
    await openGame(page, ITALIAN);
    await page.click("#lines .why >> nth=0");
    await says(page, "chart-words", "Where the score comes from");
    await press(page, "#of-position");
    await says(page, "chart-words", "Before any search");
    await focused(page, "#panel-analyse :is(button, select, summary)");
  }));
});

describe("keys that step through the game", () => {
  test("they do so after a move by hand too, until the squares are gone to", () => withBoard({}, async (page) => {
    await dragMove(page, "e2", "e4");
    await hasMoves(page, 2);
    await page.keyboard.press("ArrowLeft");
    await says(page, "where", "After 1.e4");
    await page.keyboard.press("Home");
    await says(page, "where", "The start");
    await page.keyboard.press("End");
    await says(page, "where", "Your move");
    await page.focus("#board .cell[data-square=a1]");
    await page.keyboard.press("ArrowUp");
    await focused(page, "[data-square=a2]");
    await page.keyboard.press("ArrowRight");
    await focused(page, "[data-square=b2]");
    // The board of a box has no game.
    await page.click("#moves-panel .set-up");
    await page.click("dialog .cell[data-square=d4]");
    await page.keyboard.press("ArrowRight");
    await focused(page, "dialog [data-square=e4]");
  }));

  test("they do so after a click in a line, in the book and in a table", () => withBoard({}, async (page) => {
    await page.click("#tab-analyse");
    await page.click("#book .book-move >> text=d4");
    await says(page, "where", "After 1.d4");
    await focused(page, "#previous");
    await page.keyboard.press("ArrowLeft");
    await says(page, "where", "The start");
    await page.waitForSelector("#lines .run button >> nth=1");
    await page.click("#lines .run button >> nth=0");
    await focused(page, "#variation [aria-pressed=true]");
    await page.keyboard.press("Escape");
    await says(page, "where", "The start");
    await openGame(page, "8/8/8/8/8/2k5/8/KQ6 w - - 0 1");
    await page.click("#ask-ending");
    await focused(page, "#engine-switch");
    assert.equal(await page.inputValue("#line-count"), "3");
  }));
});

describe("what stays", () => {
  test("the lines of an engine that is stopped", () => withBoard({}, async (page) => {
    await openGame(page, ITALIAN);
    await hasLines(page);
    await page.click("#engine-switch");
    await says(page, "engine-words", "Stopped at depth");
    await page.waitForSelector("#lines.stopped .line");
    assert.equal(await page.locator("#board .arrow").count(), 1);
    await page.click("#flip");
    await page.click("#tab-play");
    await page.click("#tab-analyse");
    await page.waitForSelector("#lines.stopped .line");
    assert.equal(await page.locator("#board .arrow").count(), 1);
    await page.click("#engine-switch");
    await page.waitForSelector("#lines:not(.stopped) .line");
    // Of another position there are none.
    await page.click("#engine-switch");
    await typeMove(page, "Nf6");
    await says(page, "engine-words", "waits");
    assert.equal(await page.locator("#lines .line").count(), 0);
  }));

  test("the lines go on when the board is turned", () => withBoard({}, async (page) => {
    await openGame(page, ITALIAN);
    await hasLines(page);
    await page.click("#flip");
    const words = await page.locator("#engine-words").textContent();
    await page.waitForFunction((before) =>
      document.getElementById("engine-words").textContent !== before, words);
  }));

  test("the answer of an endgame table", () => withBoard({}, async (page) => {
    await page.click("#tab-analyse");
    await page.click("#engine-switch");
    await openGame(page, "8/8/8/8/8/2k5/8/KQ6 w - - 0 1");
    await page.click("#ask-ending");
    await page.waitForSelector("#ending .ending-moves", { timeout: 300000 });
    const text = await page.locator("#ending").textContent();
    assert.match(text, /^KQKR: White mates in \d+Q[a-h]\d/);
    const [scroll, width] = await page.locator(".ending-moves").evaluate((list) =>
      [list.scrollWidth, list.clientWidth]);
    assert.ok(scroll <= width, `${scroll} of ${width} pixels`);
    await page.click("#tab-play");
    await page.click("#tab-analyse");
    assert.equal(await page.locator("#ending").textContent(), text);
    await page.selectOption("#language", "de");
    await says(page, "ending", "Weiß setzt matt");
  }));

  test("nothing of the game before", () => withBoard({}, async (page) => {
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    await says(page, "announce", "Orvelin: ");
    await page.fill("#typed", "Nf3");
    await openGame(page, ITALIAN);
    await page.click("dialog:has-text('given up') button.main");
    await says(page, "fen", ITALIAN);
    assert.equal(await page.locator("#announce").textContent(), "");
    assert.equal(await page.inputValue("#typed"), "");
  }));
});

describe("a hint", () => {
  test("it has the numbers of its moves, and is explained", () => withBoard({}, async (page) => {
    await openGame(page, "r1bqkbnr/pppp1ppp/2n5/4p3/2B1P3/8/PPPP1PPP/RNBQK1NR w KQkq - 2 3");
    await page.click("#tab-play");
    await page.click("#new-game button.main");
    assert.ok(!await page.locator("#hint-why").isVisible());
    await page.click("#hint");
    await says(page, "hint-words", "Best at full strength: 3.");
    await press(page, "#hint-why");
    await page.waitForFunction(() => document.getElementById("hint-reason").textContent);
    if (await page.locator("#hint-bars").isVisible()) {
      assert.equal(await page.locator("#hint-bars .bar:not(.term)").count(), 8);
    }
    await typeMove(page, "d3");
    await page.waitForFunction(() => !document.getElementById("hint-words").textContent);
    assert.ok(!await page.locator("#hint-bars").isVisible());
  }));

  test("of a mate", () => withBoard({}, async (page) => {
    await openGame(page, "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1");
    await page.click("#tab-play");
    await page.click("#new-game button.main");
    await page.click("#hint");
    await page.click("#hint-why");
    await says(page, "hint-reason", "mate in 1");
  }));
});

describe("languages", () => {
  const read = async (name) =>
    JSON.parse(await readFile(path.join(folder, `texts/${name}.json`), "utf8"));

  // Whatever can be read or heard on the page.
  const heard = (page) => page.evaluate(() => {
    const texts = [];
    const seen = document.createTreeWalker(document.body,
      NodeFilter.SHOW_TEXT | NodeFilter.SHOW_ELEMENT);
    for (let node = seen.nextNode(); node; node = seen.nextNode()) {
      if (node.nodeType === Node.TEXT_NODE) {
        if (node.parentElement.checkVisibility() && !node.parentElement.closest("#language")) {
          texts.push(node.data.trim());
        }
      } else if (node.checkVisibility()) {
        texts.push(...["aria-label", "title", "placeholder", "aria-valuetext"].map((name) =>
          node.getAttribute(name) ?? ""));
      }
    }
    return [...new Set(texts.filter(Boolean))];
  });

  // The texts of the page that are not the same in both languages.
  const wordsOf = async (name, other) => {
    const [own, not] = [await read(name), await read(other)];
    const same = new Set(Object.values(not));
    const shapes = Object.entries(own)
      .filter(([key, text]) => !/^letter\./.test(key) && !same.has(text) && /[a-z]{3}/.test(text))
      .map(([, text]) => text.replace(/[.*+?^$()|[\]\\]/g, "\\$&").replace(/\{\w+\}/g, ".+"));
    return new RegExp(`^(?:${shapes.join("|")})$`);
  };

  const speak = async (page, language) => {
    await page.selectOption("#language", language);
    await page.waitForFunction((wanted) => document.documentElement.lang === wanted &&
      document.getElementById("tab-play").textContent === (wanted === "de" ? "Spielen" : "Play"),
    language);
  };

  // The parts follow at once, but for what the core is asked about.
  const without = async (page, shape) => {
    let left = [];
    for (const until = Date.now() + 20000; Date.now() < until;) {
      left = (await heard(page)).filter(shape);
      if (left.length === 0) {
        break;
      }
    }
    assert.deepEqual(left, []);
  };

  for (const [tab, prepare] of [
    ["play", async (page) => {
      await page.click("#tab-play");
      await page.click("#new-game button.main");
      await page.click("#hint");
      await says(page, "hint-words", "3.");
      await page.click("#hint-why");
      await page.waitForFunction(() => document.getElementById("hint-reason").textContent);
    }],
    ["analyse", async (page) => {
      await page.click("#first");
      await says(page, "where", "The start");
      await hasLines(page);
      await page.click("#engine-switch");
      await says(page, "engine-words", "Stopped");
      await page.locator("#bars details").evaluateAll((all) =>
        all.forEach((each) => (each.open = true)));
      await page.waitForSelector("#book .book-move");
    }],
    ["review", async (page) => {
      await openGame(page, SHORT_GAME);
      await reviewGame(page);
      await page.click("#moves [data-ply='5']");
      await page.waitForSelector("#difference summary");
      await page.locator("#difference details").evaluateAll((all) =>
        all.forEach((each) => (each.open = true)));
    }],
  ]) {
    test(`all words of ${tab} change at once`, () => withBoard({}, async (page) => {
      await openGame(page, SHORT_GAME.replace(/3\. Qh5.*/, "*"));
      await page.click("#last");
      await says(page, "where", "2...Nc6");
      await prepare(page);
      const english = await wordsOf("en", "de");
      const german = await wordsOf("de", "en");
      const before = await heard(page);
      assert.ok(before.filter((text) => english.test(text)).length > 10);
      await speak(page, "de");
      await without(page, (text) => english.test(text) && !german.test(text));
      assert.ok((await heard(page)).filter((text) => german.test(text)).length > 10);
      await speak(page, "en");
      await without(page, (text) => german.test(text) && !english.test(text));
    }));
  }

  test("German writes pieces with its own letters, and takes both", () => withBoard(
    { locale: "de-DE" }, async (page) => {
      await openGame(page, SHORT_GAME);
      await hasMoves(page, 7);
      assert.deepEqual(await sansOf(page),
        ["e4", "e5", "Lc4", "Sc6", "Dh5", "Sf6", "Dxf7#"]);
      await page.click("#last");
      await says(page, "where", "Nach 4.Dxf7#.");
      const download = page.waitForEvent("download");
      await page.click("#save-pgn");
      const text = await readFile(await (await download).path(), "utf8");
      assert.match(text, /2\. Bc4 Nc6 3\. Qh5 Nf6 4\. Qxf7#/);
      await page.click("#first");
      for (const [move, shown] of [["Sf3", "1.Sf3"], ["Nc6", "Sc6"], ["sc3", "2.Sc3"]]) {
        await typeMove(page, move);
        await page.waitForSelector(`#variation button[aria-pressed=true]:text-is("${shown}")`);
      }
      await page.waitForSelector("#lines .line");
      const sans = await page.locator("#lines .run").allTextContents();
      assert.doesNotMatch(sans.join(" "), /[NQR][a-hx]/);
    }));

  test("a review in German", () => withBoard({ locale: "de-DE" }, async (page) => {
    await openGame(page, SHORT_GAME);
    await reviewGame(page, "durchgesehen");
    assert.match(await page.locator("#review-sides strong").first().textContent(), /^\d+,\d %$/);
    await page.click("#moves [data-ply='6']");
    await says(page, "headline", "3...Sf6?? – Patzer");
    await says(page, "sentence", "3...Sf6 lässt ein Matt in 1 zu; besser war 3...");
    await page.click("#moves [data-ply='1']");
    await page.waitForFunction(() => /^1\.e4 (ist|kostet) /.test(
      document.getElementById("sentence").textContent));
  }));

  test("every term has a German name", () => withBoard({}, async (page) => {
    const german = await read("de");
    const { groups } = await page.evaluate(async () => {
      const { BoardCore } = await import("/core.mjs");
      const core = new BoardCore();
      const answer = await core.ask({ ask: "evaluation" });
      core.close();
      return answer;
    });
    const ids = groups.flatMap(({ id, terms }) =>
      ["group." + id, ...terms.map((term) => "term." + term.id)]);
    assert.equal(ids.length, 8 + 47);
    assert.deepEqual(ids.filter((id) => !(id in german)), []);
  }));
});

describe("sounds", () => {
  // Counts the tones that are begun.
  const listening = (page) => page.addInitScript(() => {
    window.tones = 0;
    const { start } = OscillatorNode.prototype;
    OscillatorNode.prototype.start = function (...time) {
      window.tones += 1;
      start.apply(this, time);
    };
  });
  const tones = (page) => page.evaluate(() => window.tones);

  test("they are heard when they are chosen", () => withBoard({ before: listening }, async (page) => {
    await typeMove(page, "e4");
    await hasMoves(page, 2);
    assert.equal(await tones(page), 0);
    await page.click("#sound");
    await says(page, "sound", "Sounds: on");
    await typeMove(page, "d4");
    await hasMoves(page, 4);
    const count = await tones(page);
    assert.ok(count >= 3, `${count} tones`);
    await page.reload();
    await ready(page);
    await says(page, "sound", "Sounds: on");
    await page.click("#sound");
    await says(page, "sound", "Sounds: off");
    assert.equal(await tones(page), 0);
  }));
});

describe("controls", () => {
  const buttons = (page) => page.locator("button:visible, select:visible, summary:visible")
    .evaluateAll((all) => all.map((each) => ({ height: each.getBoundingClientRect().height,
      name: each.ariaLabel ?? (each.tagName === "BUTTON" ? each.textContent : each.id),
      move: Boolean(each.closest("#moves, .run, #moments, .line .run, summary")) })));

  test("they are large enough for fingers, and have names of their own", () => withBoard(
    { viewport: NARROW }, async (page) => {
      const look = async (view) => {
        const found = await buttons(page);
        assert.deepEqual(found.filter(({ height }) => height < LEAST_HEIGHT)
          .map(({ name, height }) => `${view}: ${name} ${height}`), []);
        const names = found.filter(({ move, name }) => name && !move).map(({ name }) => name);
        assert.deepEqual(names.filter((name, index) => names.indexOf(name) !== index), [], view);
      };
      await look("new game");
      await clickMove(page, "e2", "e4");
      await hasMoves(page, 2);
      await look("play");
      await page.click("#tab-analyse");
      await hasLines(page);
      await page.click("#engine-switch");
      await page.waitForSelector("#lines.stopped");
      const { height } = await page.locator("#lines .why").first().boundingBox();
      assert.ok(height >= 32, `Why? is ${height} pixels high`);
      await look("analyse");
      await page.click("#tab-review");
      await look("review");
    }));

  test("the mark that is chosen is seen on the graph", () => withBoard({}, async (page) => {
    await openGame(page, SHORT_GAME);
    await reviewGame(page);
    await page.click("#next-mark");
    // All of these let the pointer through: what is drawn last lies on top.
    const order = await page.locator("#graph > *").evaluateAll((all) =>
      all.map((each) => each.classList[0] ?? each.tagName));
    assert.ok(order.indexOf("cursor") < order.indexOf("dot"), order.join(" "));
  }));
});

describe("frames", () => {
  test("the page is drawn while the engine thinks", (context) => withBoard({}, async (page) => {
    await openGame(page, ITALIAN);
    await page.selectOption("#line-count", "5");
    await hasLines(page);
    const { frames, longest } = await page.evaluate(() => new Promise((done) => {
      const begun = performance.now();
      let [last, count, most] = [begun, 0, 0];
      const draw = (now) => {
        count += 1;
        most = Math.max(most, now - last);
        last = now;
        if (now - begun < 3000) {
          requestAnimationFrame(draw);
        } else {
          done({ frames: (1000 * count) / (now - begun), longest: most });
        }
      };
      requestAnimationFrame(draw);
    }));
    context.diagnostic(`${frames.toFixed(1)} frames a second, ` +
      `the longest took ${longest.toFixed(0)} ms`);
    assert.ok(frames > LEAST_FRAMES, `${frames} frames a second`);
  }));
});
