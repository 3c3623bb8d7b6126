// The board in Debian's Firefox: what another engine of pages may do in another way.
import assert from "node:assert/strict";
import { after, before, describe, test } from "node:test";
import { beginFirefox, clickMove, drawn, end, hasMoves, ready, sansOf, says, typeMove, withBoard } from "./support.mjs";

describe("Firefox", () => {
  before(beginFirefox);
  after(end);

  test("a game, its analysis, and a reload", () => withBoard({}, async (page) => {
    assert.match(await page.evaluate(() => navigator.userAgent), /Firefox/);
    // The engine hears `stop` in shared memory.
    assert.equal(await page.evaluate(() => window.crossOriginIsolated), true);
    await page.selectOption("[name=level]", "800");
    await clickMove(page, "e2", "e4");
    await hasMoves(page, 2);
    await says(page, "play-title", "level 800");
    await typeMove(page, "a3");
    await hasMoves(page, 4);
    await says(page, "where", "Your move");
    const [sans, pieces] = [await sansOf(page), await drawn(page)];
    assert.deepEqual([sans[0], sans[2]], ["e4", "a3"]);
    assert.notEqual(await page.locator("#opening").textContent(), "");

    await page.click("#tab-analyse");
    await page.waitForFunction(() => document.querySelectorAll("#lines .line").length === 3);
    await says(page, "engine-words", "Depth");
    assert.equal(await page.locator("#board .arrow").count(), 1);
    assert.equal(await page.locator("#bars .bar:not(.term)").count(), 8);
    await page.click("#engine-switch");
    await says(page, "engine-switch", "Go");

    await page.reload();
    await ready(page);
    await hasMoves(page, 4);
    assert.deepEqual([await sansOf(page), await drawn(page)], [sans, pieces]);
  }));
});
