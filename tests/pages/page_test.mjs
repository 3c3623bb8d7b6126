// The pages of orvelin-explain in Chromium: stepped through by keys and clicks, with all widths,
// schemes and rules of accessibility. PAGES is the folder with the pages; SHOTS, if it is set, gets
// pictures of them.
import assert from "node:assert/strict";
import { existsSync } from "node:fs";
import { createRequire } from "node:module";
import path from "node:path";
import { after, before, describe, test } from "node:test";
import { pathToFileURL } from "node:url";
import { chromium } from "playwright-core";

const axe = createRequire(import.meta.url).resolve("axe-core/axe.min.js");
const folder = process.env.PAGES;
const WIDE = { width: 1200, height: 900 };
const NARROW = { width: 400, height: 800 };
let browser;

before(async () => {
  // The sandbox of the browser is not to be had by root.
  const args = process.getuid() === 0 ? ["--no-sandbox"] : [];
  browser = await chromium.launch({ executablePath: process.env.CHROMIUM, args });
});
after(() => browser.close());

// Opens a page and runs the body with it; nothing may be loaded and nothing said on the console.
async function withPage(name, options, body) {
  const context = await browser.newContext({ viewport: WIDE, ...options });
  const page = await context.newPage();
  const file = path.join(folder, name);
  const heard = [];
  page.on("console", (message) => heard.push(message.text()));
  page.on("pageerror", (error) => heard.push(String(error)));
  page.on("request", (request) => {
    if (!request.url().startsWith(pathToFileURL(file).href) && request.url() !== "data:,") {
      heard.push("loads " + request.url());
    }
  });
  try {
    await page.goto(pathToFileURL(file).href);
    await body(page, file);
  } finally {
    await context.close();
  }
  assert.deepEqual(heard, []);
}

const data = (page) => page.evaluate(() => JSON.parse(document.getElementById("data").textContent));
const placementOf = (position) => position.fen.split(" ")[0];
const where = (page) => page.textContent("#where");

// A link within the page is followed after the click has returned.
const arrivesAt = (page, words) => page.waitForFunction(
  (wanted) => document.getElementById("where").textContent.includes(wanted), words);

// The pieces field of a FEN, read off the board that is drawn.
const drawn = (page) => page.evaluate(() => {
  const squares = Array(64).fill(".");
  document.querySelectorAll("#board use").forEach((use) => {
    squares[use.getAttribute("y") / 40 * 8 + use.getAttribute("x") / 40] =
      use.getAttribute("href").slice(-1);
  });
  const ranks = [];
  for (let i = 0; i < 64; i += 8) {
    ranks.push(squares.slice(i, i + 8).join("").replace(/\.+/g, (empty) => empty.length));
  }
  return ranks.join("/");
});

async function audit(page, words) {
  await page.addScriptTag({ path: axe });
  const { violations } = await page.evaluate(() =>
    window.axe.run({ runOnly: ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa",
      "best-practice"] }));
  const found = violations.map((v) => `${v.id}: ${v.nodes.map((n) => n.html).join(" ")}`);
  assert.deepEqual(found, [], words);
}

async function shoot(page, name) {
  if (process.env.SHOTS) {
    await page.screenshot({ path: path.join(process.env.SHOTS, name), fullPage: true });
  }
}

describe("a game", () => {
  for (const name of ["game1.html", "game2.html", "game3.html"]) {
    test(`the keys go through ${name}`, () => withPage(name, {}, async (page) => {
      const { positions } = await data(page);
      for (const position of positions) {
        assert.equal(await drawn(page), placementOf(position));
        await page.keyboard.press("ArrowRight");
      }
      await page.keyboard.press("ArrowLeft");
      assert.equal(await drawn(page), placementOf(positions.at(-2)));
      await page.keyboard.press("Home");
      assert.equal(await where(page), "The start");
      await page.keyboard.press("End");
      assert.equal(await drawn(page), placementOf(positions.at(-1)));
    }));

    test(`lines of ${name} are played on the board`, () => withPage(name, {}, async (page) => {
      const { positions, moves } = await data(page);
      for (let ply = 1; ply < positions.length; ply += 1) {
        await page.keyboard.press("ArrowRight");
        const move = moves[ply - 1];
        const key = move.isBest ? "best" : "played";
        if (move[key]) {
          await page.click(`[data-line=${key}][data-step="1"]`);
          assert.equal(await drawn(page), placementOf(positions[ply]), move.san);
          await page.keyboard.press("Escape");
        }
        if (move.best && move.best.leafFen && move.best.leaf.length <= move.best.moves.length) {
          const last = move.best.leaf.length;
          if (last > 0) {
            await page.click(`[data-line=best][data-step="${last}"]`);
            assert.equal(await drawn(page), move.best.leafFen.split(" ")[0], move.san);
            await page.keyboard.press("Escape");
          }
        }
      }
    }));
  }

  test("a click on the graph chooses", () => withPage("game1.html", {}, async (page) => {
    const { positions } = await data(page);
    const box = await page.locator("#graph").boundingBox();
    for (const [share, ply] of [[0.001, 0], [0.5, 41], [0.999, 82]]) {
      await page.mouse.click(box.x + box.width * share, box.y + box.height / 2);
      assert.equal(await drawn(page), placementOf(positions[ply]));
      assert.equal(await page.getAttribute("#graph", "aria-valuenow"), String(ply));
    }
    await page.mouse.move(box.x + 5, box.y + 5);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width / 4, box.y + 5);
    await page.mouse.up();
    assert.equal(await drawn(page), placementOf(positions[21]));
  }));

  test("a click on a move chooses", () => withPage("game1.html", {}, async (page) => {
    const { positions } = await data(page);
    await page.click("[data-ply='33']");
    assert.match(await where(page), /^After 17\.Kf1/);
    assert.equal(await drawn(page), placementOf(positions[33]));
    assert.equal(await page.getAttribute("[data-ply='33']", "aria-current"), "true");
    await page.click("#next");
    assert.match(await where(page), /^After 17\.\.\.Be6/);
    assert.equal(await page.locator("[aria-current]").count(), 1);
  }));

  test("marks are gone through", () => withPage("game1.html", {}, async (page) => {
    const { moves } = await data(page);
    const marked = moves.filter((move) => move.mark);
    assert.ok(marked.length > 2);
    for (const move of marked) {
      await page.keyboard.press("n");
      assert.equal(await where(page), `After ${move.label}${move.san}${move.mark}`);
      assert.ok((await page.textContent("#headline")).includes(move.markName));
      assert.ok((await page.textContent("#sentence")).length > 10);
    }
    await page.keyboard.press("p");
    assert.ok((await where(page)).includes(marked.at(-2).san));
    const dots = page.locator(".dot:not(.mate)");
    assert.deepEqual(await dots.allTextContents(), marked.map((move) => move.mark));
    assert.deepEqual((await page.locator(".dot.mate").allTextContents()).at(-1), "#");
    await page.locator(".moments a").first().click();
    await arrivesAt(page, `After ${marked[0].label}${marked[0].san}`);
  }));

  test("bars open to terms", () => withPage("game1.html", {}, async (page) => {
    const { moves } = await data(page);
    const ply = moves.findIndex((move) => move.groups && move.mark) + 1;
    await page.click(`[data-ply='${ply}']`);
    assert.equal(await page.locator("#bars .bar:not(.term)").count(), 8);
    assert.equal(await page.getAttribute("#difference", "aria-pressed"), "true");
    const summary = page.locator("#bars summary").first();
    await summary.focus();
    await page.keyboard.press("Enter");
    const terms = page.locator("#bars details[open] .bar.term");
    assert.equal(await terms.count(), moves[ply - 1].groups[0][2].length);
    assert.match(await terms.first().textContent(), /[a-z_]+.[0-9]\.[0-9]{2}/);
    await page.click("#position");
    assert.match(await page.textContent("#chart-words"), /before any search/);
  }));

  test("bars that decide nothing have a note", () => withPage("mate.html", {}, async (page) => {
    assert.match(await page.textContent("#chart-words"), /The game is drawn\./);
  }));

  test("the board turns", () => withPage("game1.html", {}, async (page) => {
    const straight = await drawn(page);
    await page.keyboard.press("f");
    assert.equal(await drawn(page), [...straight].reverse().join(""));
  }));

  test("an address leads to a move", () => withPage("game1.html", {}, async (page, file) => {
    await page.goto(pathToFileURL(file).href + "#ply-36");
    await arrivesAt(page, "After 18...Bxc4");
  }));

  test("all is reached by the keyboard", () => withPage("game1.html", {}, async (page) => {
    const seen = new Set();
    for (let i = 0; i < 200; i += 1) {
      await page.keyboard.press("Tab");
      const name = await page.evaluate(() => {
        const element = document.activeElement;
        return element.dataset.ply ? "move" : element.id || element.tagName;
      });
      if (name === "BODY") {
        break;
      }
      seen.add(name);
    }
    for (const name of ["scheme", "graph", "previous", "next", "flip", "position", "move", "A"]) {
      assert.ok(seen.has(name), name);
    }
    await page.focus("#graph");
    await page.keyboard.press("ArrowUp");
    assert.match(await where(page), /^After 1\.Nf3/);
  }));

  test("without a script there is the game", () =>
    withPage("game1.html", { javaScriptEnabled: false }, async (page) => {
      assert.equal(await page.locator(".moves button").count(), 82);
      assert.ok(await page.locator(".moments li").first().isVisible());
      assert.ok(await page.locator("#graph path.area").isVisible());
      assert.ok(!(await page.locator("#next").isVisible()));
    }));
});

describe("a position", () => {
  test("its lines and leaves", () => withPage("position.html", {}, async (page) => {
    const { lines, positions } = await data(page);
    assert.equal(lines.length, 3);
    assert.equal(await drawn(page), placementOf(positions[0]));
    await page.click("[data-line='1'][data-step='2']");
    assert.match(await where(page), /^In the line/);
    assert.notEqual(await drawn(page), placementOf(positions[0]));
    await page.click("#back");
    assert.equal(await drawn(page), placementOf(positions[0]));
    await page.click("[aria-label='The leaf of line 1']");
    assert.match(await page.textContent("#chart-words"), /The leaf/);
    assert.equal(await page.locator("#bars .bar:not(.term)").count(), 8);
    await page.keyboard.press("ArrowRight");
    assert.match(await where(page), /^In the line/);
  }));
});

describe("all pages", () => {
  const names = ["game1.html", "game2.html", "position.html", "mate.html"];
  for (const colorScheme of ["light", "dark"]) {
    for (const [width, viewport] of [["wide", WIDE], ["narrow", NARROW]]) {
      for (const name of names) {
        test(`${name}, ${colorScheme}, ${width}`, () =>
          withPage(name, { colorScheme, viewport }, async (page, file) => {
            await page.goto(pathToFileURL(file).href + "#ply-35");
            for (const summary of await page.locator("#bars summary").all()) {
              await summary.click();
            }
            await audit(page, name);
            const [scroll, inner] = await page.evaluate(() =>
              [document.documentElement.scrollWidth, window.innerWidth]);
            assert.ok(scroll <= inner, `${scroll} pixels wide`);
            await shoot(page, `${path.parse(name).name}-${colorScheme}-${width}.png`);
          }));
      }
    }
  }

  test("the switch of colours", () => withPage("game1.html", { colorScheme: "light" },
    async (page) => {
      const ground = () => page.evaluate(() => getComputedStyle(document.body).backgroundColor);
      const light = await ground();
      await page.click("#scheme");
      assert.equal(await ground(), light);
      await page.click("#scheme");
      const dark = await ground();
      assert.notEqual(dark, light);
      await audit(page, "dark by the switch");
      await page.reload();
      assert.equal(await ground(), dark);
      await page.click("#scheme");
      assert.equal(await ground(), light);
    }));

  test("on paper", () => withPage("game1.html", { colorScheme: "dark" }, async (page) => {
    await page.emulateMedia({ media: "print" });
    assert.equal(await page.evaluate(() => getComputedStyle(document.body).backgroundColor),
      "rgb(255, 255, 255)");
    assert.ok(!(await page.locator("#next").isVisible()));
    assert.ok(await page.locator(".moments").isVisible());
    const paper = await page.pdf({ format: "A4" });
    assert.ok(paper.length > 10000);
    await shoot(page, "game1-print.png");
  }));

  test("the pages are there", () => {
    for (const name of [...names, "game3.html"]) {
      assert.ok(existsSync(path.join(folder, name)), name);
    }
  });
});
