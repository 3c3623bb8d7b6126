export class Review {
  marks = new Map();
  constructor(app) { this.app = app; }
  name() {}
  enter() {}
  leave() {}
  forget() {}
  mayMove() { return true; }
  make(move) { return this.app.explore(move); }
  draw() {}
  follow() {}
}
