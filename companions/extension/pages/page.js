// What the extension's own pages share: texts, elements, and the road to the background.

export const browser = globalThis.browser ?? globalThis.chrome;

export function text(name, ...substitutes) {
  return browser.i18n.getMessage(name, substitutes);
}

/** Asks the background; null where it does not know what is asked. */
export function ask(type, members = {}) {
  return browser.runtime.sendMessage({ type, ...members });
}

/** Calls `look` whenever the background has something new to show. */
export function onChange(look) {
  browser.runtime.onMessage.addListener((message) => {
    if (message?.type === "changed") void look();
  });
}

export function byId(id) {
  return document.getElementById(id);
}

/** Fills each element that names a text with it. */
export function fillTexts() {
  document.documentElement.lang = browser.i18n.getUILanguage().startsWith("en")
    ? browser.i18n.getUILanguage() : "en";
  for (const element of document.querySelectorAll("[data-text]")) {
    element.textContent = text(element.dataset.text);
  }
}

/** Sets a text only when it is another one, so that a screen reader is not told it again. */
export function show(element, content) {
  if (element.textContent !== content) element.textContent = content;
  element.hidden = content === "";
}

/** False in a frame, where no page of ours does anything: who has framed it could steer clicks. */
export function isAlone() {
  return window.top === window;
}

export function made(name, { className = "", content = "" } = {}) {
  const element = document.createElement(name);
  element.className = className;
  element.textContent = content;
  return element;
}
