// The road to the bridge: one native port, opened again when it is needed, and the open questions.

import { parseFrame } from "../shared/frames.js";

export const hostName = "com.tarne.bridge";
const answerPatience = 25000;
const restBetweenTries = 1000;
const helloPatience = 10000;

/**
 * Calls `onFrame` for each frame that can be read and `onLost` once for each port that ends.
 * `ask` gives the answer, or one with the error "no_server" where the road or the patience ends.
 */
export class Bridge {
  #connectNative;
  #hello;
  #onFrame;
  #onLost;
  #port = null;
  #silence = null;
  #lastTry = -Infinity;
  #nextId = 1;
  #open = new Map();

  constructor({ connectNative, hello, onFrame, onLost }) {
    this.#connectNative = connectNative;
    this.#hello = hello;
    this.#onFrame = onFrame;
    this.#onLost = onLost;
  }

  /** Opens the port unless it is open. A bridge that ends at once is not started in a tight loop. */
  ensure() {
    if (this.#port !== null || performance.now() - this.#lastTry < restBetweenTries) return;
    this.#lastTry = performance.now();
    const port = this.#connectNative(hostName);
    this.#port = port;
    port.onMessage.addListener((message) => this.#receive(port, message));
    port.onDisconnect.addListener(() => this.#lose(port));
    // A bridge answers the hello at once; one that hangs would keep a working one away for good.
    this.#silence = setTimeout(() => {
      port.disconnect();
      this.#lose(port);
    }, helloPatience);
    port.postMessage({ v: 1, type: "hello", ...this.#hello });
  }

  ask(question) {
    const id = this.#nextId++;
    if (this.#port === null) return Promise.resolve(unanswered(id));
    return new Promise((resolve) => {
      const timer = setTimeout(() => this.#answer(unanswered(id)), answerPatience);
      this.#open.set(id, (answer) => {
        clearTimeout(timer);
        resolve(answer);
      });
      this.#port.postMessage({ v: 1, id, ...question });
    });
  }

  #receive(port, message) {
    const frame = parseFrame(message);
    if (frame === null || port !== this.#port) return;
    clearTimeout(this.#silence);
    if (frame.kind === "answer") this.#answer(frame);
    else this.#onFrame(frame);
  }

  // What nobody has asked, or what was answered already, is dropped.
  #answer(frame) {
    const resolve = this.#open.get(frame.id);
    this.#open.delete(frame.id);
    resolve?.(frame);
  }

  #lose(port) {
    // Read, or the browser writes it to its log as unhandled.
    void globalThis.chrome?.runtime?.lastError;
    if (port !== this.#port) return;
    this.#port = null;
    clearTimeout(this.#silence);
    this.#onLost();
    for (const id of [...this.#open.keys()]) this.#answer(unanswered(id));
  }
}

function unanswered(id) {
  return { kind: "answer", id, error: "no_server", retryAfter: 0 };
}
