// What is told of the game that is played, and its buttons.

import { find, setText } from "./dom.mjs";
import { otherSide } from "./fen.mjs";

function overWords(texts, play) {
  const { kind, result } = play.over;
  if (result === "1/2-1/2") {
    return texts.get("over.draw", { why: texts.get("why." + kind) });
  }
  const winner = result === "1-0" ? "white" : "black";
  const who = texts.get(winner === play.side ? "over.won" : "over.lost");
  const loser = texts.get(otherSide(winner));
  return `${who} ${texts.get("over." + kind, { winner: texts.get(winner), loser })}`;
}

/** One sentence on the state of the game. */
export function stateWords({ texts, game: { play }, last }) {
  if (!play) {
    return texts.get("play.first");
  }
  if (play.over) {
    return overWords(texts, play);
  }
  return texts.get(last.side === play.side ? "play.yours" : "play.thinks");
}

/** The panel: the form where no game is played, else the game. */
export function drawPlay(app) {
  const { texts, game, last } = app;
  const { play } = game;
  find("new-game").hidden = Boolean(play);
  find("playing").hidden = !play;
  if (!play) {
    return;
  }
  const level = play.level ? texts.get("level.of", { level: play.level })
    : texts.get("level.full");
  setText(find("play-title"), texts.get("play.title", { level }));
  setText(find("play-words"), play.over ? overWords(texts, play) : "");
  find("play-buttons").hidden = Boolean(play.over);
  find("over-buttons").hidden = !play.over;
  const first = app.startSide === play.side ? 0 : 1;
  find("take-back").disabled = game.moves.length <= first;
  find("hint").disabled = last.side !== play.side;
}
