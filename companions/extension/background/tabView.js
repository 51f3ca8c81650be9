// What is looked up in tabs and shown in them.

import { blockPage, supportsReplacing } from "./platform.js";

const lookPatience = 2000;
// More than a page is given to come to rest, as a busy one keeps its own time badly.
const settledPatience = 4000;

export class TabView {
  #browser;

  constructor(browser) {
    this.#browser = browser;
  }

  async tab(tabId) {
    try {
      return await this.#browser.tabs.get(tabId);
    } catch {
      return null;
    }
  }

  /** The visible tab of each window. */
  visibleTabs() {
    return this.#browser.tabs.query({ active: true });
  }

  /** {address, title, description, isSensitive}; null for a page that is not there yet, or not ours. */
  async look(tabId) {
    const settled = await this.#run({ tabId }, { files: ["content/settled.js"] }, settledPatience);
    if (settled?.[0]?.result !== true) return null;
    const frames = await this.#run({ tabId, allFrames: true },
      { files: ["content/roots.js", "content/look.js"] });
    const main = frames?.find(({ frameId }) => frameId === 0)?.result;
    if (!main) return null;
    return { ...main, isSensitive: frames.some(({ result }) => result?.isSensitive === true) };
  }

  /** Whether the page holds input that leaving would lose; null where it does not say in time. */
  async hasUnsavedInput(tabId) {
    const frames = await this.#run({ tabId, allFrames: true },
      { files: ["content/roots.js", "content/unsaved.js"] });
    if (frames === null) return null;
    return frames.some(({ result }) => result === true);
  }

  async showStrip(tabId, kind, texts) {
    await this.#show(tabId, "strip", { kind, texts });
  }

  /** Covers the page and mutes the tab. */
  async cover(tabId, texts) {
    await this.#show(tabId, "cover", { texts });
    const tab = await this.tab(tabId);
    if (tab !== null && !tab.mutedInfo?.muted) await this.#mute(tabId, true);
  }

  /** Takes away what `showStrip` and `cover` have put on the page. Gives whether it could be reached. */
  async clear(tabId) {
    const frames = await this.#run({ tabId }, { func: () => {
      globalThis.tarneCompanionCover?.hide();
      globalThis.tarneCompanionStrip?.hide();
    } });
    await this.unmute(tabId);
    return frames !== null && frames.length > 0;
  }

  // Only where the extension has muted it: the user's own muting stays.
  async unmute(tabId) {
    const tab = await this.tab(tabId);
    if (tab?.mutedInfo?.extensionId === this.#browser.runtime.id) await this.#mute(tabId, false);
  }

  /** Opens the block page in place of the tab's page; `isLoaded` where that page is in the history. */
  async openBlockPage(tabId, isLoaded) {
    const replacing = isLoaded && supportsReplacing ? { loadReplace: true } : {};
    await this.#browser.tabs.update(tabId, { url: blockPage, ...replacing });
  }

  /** A new-tab page in the place of this tab. */
  async openNewTab(tabId) {
    const tab = await this.tab(tabId);
    if (tab === null) return;
    await this.#browser.tabs.create({ windowId: tab.windowId, index: tab.index, active: tab.active });
    await this.#browser.tabs.remove(tabId);
  }

  async #mute(tabId, muted) {
    // The tab may be gone by now.
    await this.#browser.tabs.update(tabId, { muted }).catch(() => {});
  }

  async #show(tabId, name, what) {
    await this.#run({ tabId }, { files: [`content/${name}.js`] });
    const show = name === "cover" ? (given) => globalThis.tarneCompanionCover.show(given)
      : (given) => globalThis.tarneCompanionStrip.show(given);
    await this.#run({ tabId }, { func: show, args: [what] });
  }

  // Null for a page that no script may enter, a tab that is gone, and one that does not answer.
  async #run(target, script, patience = lookPatience) {
    let timer;
    const isOver = new Promise((resolve) => {
      timer = setTimeout(resolve, patience, null);
    });
    try {
      return await Promise.race([isOver,
        this.#browser.scripting.executeScript({ target, injectImmediately: true, ...script })]);
    } catch {
      return [];
    } finally {
      clearTimeout(timer);
    }
  }
}
