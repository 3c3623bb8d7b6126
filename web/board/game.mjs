// The game that the page is about, and how it is kept through a reload.

const PLACE = "orvelin-board";
const MOST_MOVES = 2000;

export const emptyGame = (start = "startpos", chess960 = false) =>
  ({ start, chess960, moves: [], tags: {}, result: "*", play: null });

/** The moves up to a ply as the core and the engine are asked about them. */
export const partOf = (game, ply = game.moves.length, line = []) =>
  ({ start: game.start, chess960: game.chess960, moves: [...game.moves.slice(0, ply), ...line] });

export function read(place = PLACE) {
  try {
    return JSON.parse(localStorage.getItem(place)) ?? {};
  } catch {
    return {};
  }
}

/** Where nothing can be kept, the page works all the same. */
export function keep(state, place = PLACE) {
  try {
    localStorage.setItem(place, JSON.stringify(state));
  } catch {
    // A full or a forbidden store.
  }
}

const isText = (value) => typeof value === "string" && value.length < 500;
const isTime = (value) => Number.isFinite(value) && value >= 0;

function knownPlay(play) {
  if (play === null) {
    return true;
  }
  const { clock } = play;
  return typeof play === "object" && (play.side === "white" || play.side === "black") &&
    Number.isInteger(play.level) && play.level >= 0 && play.level <= 2400 &&
    (play.over === null || (isText(play.over?.kind) && isText(play.over?.result))) &&
    (clock === null || (clock && [clock.white, clock.black, clock.increment].every(isTime)));
}

/** Whether what was kept is a game; its moves are looked at by the core. */
export function isGame(game) {
  return Boolean(game) && isText(game.start) && typeof game.chess960 === "boolean" &&
    Array.isArray(game.moves) && game.moves.length <= MOST_MOVES && game.moves.every(isText) &&
    game.tags !== null && typeof game.tags === "object" && Object.values(game.tags).every(isText) &&
    isText(game.result) && game.play !== undefined && knownPlay(game.play);
}
