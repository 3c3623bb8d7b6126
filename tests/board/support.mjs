// Pages of the board in Chromium, and in Firefox. BOARD is the folder that tools/make-board has made, TOOL is
// orvelin-board; SHOTS, if it is set, gets pictures.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import { readFile } from "node:fs/promises";
import { createServer } from "node:http";
import { createRequire } from "node:module";
import path from "node:path";
import { chromium, firefox } from "playwright-core";

export const folder = process.env.BOARD;
export const WIDE = { width: 1280, height: 900 };
export const NARROW = { width: 360, height: 740 };
const axe = createRequire(import.meta.url).resolve("axe-core/axe.min.js");
// For whatever an engine on a busy machine may take.
const PATIENCE = 60000;
const START_PATIENCE = 180000;

let browser;
let server;
let address;

/** Starts orvelin-board, and the browser by the function. */
async function beginWith(launch) {
  server = spawn("python3", ["-B", process.env.TOOL, "--no-browser", "--folder", folder]);
  server.stderr.pipe(process.stderr);
  address = await new Promise((done) => server.stdout.once("data", (data) => done(String(data).trim())));
  browser = await launch();
}

// The sandbox of Chromium is not to be had by root.
export const begin = () => beginWith(() => chromium.launch({ executablePath: process.env.CHROMIUM,
  timeout: START_PATIENCE, args: process.getuid() === 0 ? ["--no-sandbox"] : [] }));

// The channel is that of a Firefox as it is given to users, which is driven by WebDriver BiDi.
export const beginFirefox = () => beginWith(() => firefox.launch({ executablePath: process.env.FIREFOX,
  timeout: START_PATIENCE, channel: "moz-firefox" }));

export async function end() {
  await browser?.close();
  server?.kill();
}

/** The page is there, and takes moves. */
export const ready = (page) => page.waitForSelector("body[data-ready=true] .piece");

/**
 * Opens the board and runs the body with its page. Nothing may be said on the console, and nothing
 * be asked of anyone but the server.
 */
export async function withBoard(options, body) {
  const { at = address, before = async () => {}, ...rest } = options;
  const context = await browser.newContext({ viewport: WIDE, locale: "en-GB", ...rest });
  context.setDefaultTimeout(PATIENCE);
  const page = await context.newPage();
  const heard = [];
  page.on("console", (message) => heard.push(message.text()));
  page.on("pageerror", (error) => heard.push(String(error)));
  page.on("request", (request) => {
    if (!/^(blob|data):/.test(request.url()) && !request.url().startsWith(at)) {
      heard.push("asks for " + request.url());
    }
  });
  try {
    await before(page, context);
    await page.goto(at);
    await ready(page);
    await body(page, context);
  } finally {
    await context.close();
  }
  assert.deepEqual(heard, []);
}

/** Holds the core back, so that the page loads no further; the answer is what lets it go. */
export async function holdCore(page) {
  let release;
  const held = new Promise((done) => (release = done));
  await page.route("**/orvelin-board-core.wasm", async (route) => {
    await held;
    await route.continue().catch(() => {});
  });
  return release;
}

/** The pieces field of a FEN, read off the pieces that are drawn. */
export const drawn = (page) => page.evaluate(() => {
  const squares = Array(64).fill(".");
  document.querySelectorAll("#board .piece").forEach((piece) => {
    const [file, rank] = piece.dataset.square;
    squares[8 * (8 - Number(rank)) + "abcdefgh".indexOf(file)] = piece.dataset.piece;
  });
  const ranks = [];
  for (let i = 0; i < 64; i += 8) {
    ranks.push(squares.slice(i, i + 8).join("").replace(/\.+/g, (gap) => gap.length));
  }
  return ranks.join("/");
});

export const sansOf = (page) => page.locator("#moves button").evaluateAll((moves) =>
  moves.map((move) => move.firstChild.textContent));

/** Waits until the list has so many moves. */
export const hasMoves = (page, count) => page.waitForFunction(
  (wanted) => document.querySelectorAll("#moves button").length === wanted, count);

export const says = (page, id, words) => page.waitForFunction(
  ([place, wanted]) => document.getElementById(place).textContent.includes(wanted), [id, words]);

export async function typeMove(page, text) {
  await page.fill("#typed", text);
  await page.press("#typed", "Enter");
}

/** Draws from the middle of one element to that of another by the mouse. */
export async function drag(page, from, to) {
  const middle = async (selector) => {
    const box = await page.locator(selector).boundingBox();
    return [box.x + box.width / 2, box.y + box.height / 2];
  };
  await page.mouse.move(...await middle(from));
  await page.mouse.down();
  await page.mouse.move(...await middle(to), { steps: 4 });
  await page.mouse.up();
}

/** Draws a piece from one square of the game to another. */
export const dragMove = (page, from, to) =>
  drag(page, `#board .cell[data-square=${from}]`, `#board .cell[data-square=${to}]`);

export async function clickMove(page, from, to) {
  await page.click(`#board .cell[data-square=${from}]`);
  await page.waitForSelector(`#board .cell.target[data-square=${to}]`);
  await page.click(`#board .cell[data-square=${to}]`);
}

/** Opens a text in the box for it. */
export async function openGame(page, text) {
  await page.click("#open");
  await page.fill("dialog textarea", text);
  await page.click("dialog button.main");
}

/** Has the game reviewed, not deep, until the page says in its language that it is done. */
export async function reviewGame(page, done = "The review is done") {
  await page.click("#tab-review");
  await page.selectOption("#review-depth", "6");
  await page.click("#review-go");
  await says(page, "announce", done);
}

export async function audit(page, words) {
  // As an administrator would: the policy of the page allows no script of others.
  await page.evaluate(await readFile(axe, "utf8"));
  const { violations } = await page.evaluate(() =>
    window.axe.run({ runOnly: ["wcag2a", "wcag2aa", "wcag21a", "wcag21aa", "wcag22aa", "best-practice"] }));
  const found = violations.map((v) => `${v.id}: ${v.nodes.map((n) => n.html).join(" ")}`);
  assert.deepEqual(found, [], words);
}

export async function shoot(page, name) {
  if (process.env.SHOTS) {
    await page.screenshot({ path: path.join(process.env.SHOTS, name), fullPage: true });
  }
}

const TYPES = { ".html": "text/html", ".mjs": "text/javascript", ".js": "text/javascript", ".css": "text/css",
  ".json": "application/json", ".svg": "image/svg+xml", ".wasm": "application/wasm", ".txt": "text/plain",
  ".webmanifest": "application/manifest+json" };

/** A plain web host, which sends no headers that isolate a page. */
export async function plainHost() {
  const host = createServer(async (request, response) => {
    const name = request.url === "/" ? "/index.html" : request.url;
    try {
      const bytes = await readFile(path.join(folder, path.normalize(name)));
      response.writeHead(200, { "Content-Type": TYPES[path.extname(name)] ?? "application/octet-stream" });
      response.end(bytes);
    } catch {
      response.writeHead(404).end();
    }
  });
  await new Promise((done) => host.listen(0, "127.0.0.1", done));
  return { at: `http://localhost:${host.address().port}/`, close: () => host.close() };
}
