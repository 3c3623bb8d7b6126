/** A chess engine in a worker of its own, spoken to in UCI text. */
export class Orvelin {
  /**
   * Starts the worker.
   * @param options `shared` tells whether lines are handed over in shared memory, so that they are
   * acted on during a search. The default is true wherever that can be had: in node, and in a page
   * that is cross-origin isolated.
   */
  constructor(options?: { shared?: boolean });

  /** Whether lines are handed over in shared memory. */
  readonly shared: boolean;

  /** Called with each line of the engine. */
  onmessage: ((event: { data: string }) => void) | null;

  /** Called when the engine cannot be started, or has failed. */
  onerror: ((event: { message: string }) => void) | null;

  /** Sends a line, or several with line feeds between them. `quit` ends the worker. */
  postMessage(line: string): void;

  /** Ends the worker at once. */
  terminate(): void;
}

export default Orvelin;
