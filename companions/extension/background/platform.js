// What differs between the browsers.

export const browser = globalThis.browser ?? globalThis.chrome;

const isFirefox = typeof browser.runtime.getBrowserInfo === "function";

export const browserName = isFirefox ? "firefox" : "chromium";

/** Whether a tab can be sent to a page without leaving the old one in its history. */
export const supportsReplacing = isFirefox;

export const blockPage = browser.runtime.getURL("pages/block.html");

export function message(name, ...substitutes) {
  return browser.i18n.getMessage(name, substitutes);
}
