// A page that changes its own address mostly changes its title next, and until then the old title
// stands at the new address. It is waited for, a second at most.

const patience = 1000;

export class Settling {
  #onSettled;
  #settled = new Map();
  #waiting = new Map();

  /** `onSettled(tabId)` is called when the time is over. */
  constructor(onSettled) {
    this.#onSettled = onSettled;
  }

  /** Whether the title belongs to the address; begins to wait where it may not. */
  isSettled({ id, title }, address) {
    const last = this.#settled.get(id);
    if (last === undefined || last.address === address || last.title !== title) {
      this.#endWaiting(id);
      this.#settled.set(id, { address, title });
      return true;
    }
    if (this.#waiting.get(id)?.address !== address) this.#wait(id, address);
    return false;
  }

  /** Takes in a tab's new title. Gives whether a page was waiting for it. */
  takeTitle(tabId, title) {
    if (this.#waiting.has(tabId)) return true;
    const last = this.#settled.get(tabId);
    if (last !== undefined) last.title = title;
    return false;
  }

  /** The tab shows another document, or is gone. */
  forget(tabId) {
    this.#endWaiting(tabId);
    this.#settled.delete(tabId);
  }

  #wait(tabId, address) {
    this.#endWaiting(tabId);
    const timer = setTimeout(() => {
      this.forget(tabId);
      this.#onSettled(tabId);
    }, patience);
    this.#waiting.set(tabId, { address, timer });
  }

  #endWaiting(tabId) {
    clearTimeout(this.#waiting.get(tabId)?.timer);
    this.#waiting.delete(tabId);
  }
}
