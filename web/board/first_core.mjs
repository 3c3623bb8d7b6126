// The core that the page asks about its game. The page loads this before all else, so that the
// worker comes up while the rest of the page is read.

import { BoardCore } from "./core.mjs";

export const firstCore = new BoardCore();
