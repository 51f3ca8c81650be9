// A strip at the upper edge of a page, with a question or a notice, in a closed shadow root. Runs in
// the extension's world of the page; `show` and `hide` are called by the background.
(() => {
  if (globalThis.tarneCompanionStrip) return;

  const style = `
    section { position: fixed; top: 0; left: 0; right: 0; z-index: 2147483647; box-sizing: border-box;
      display: flex; flex-wrap: wrap; align-items: center; justify-content: center; gap: .5rem .75rem;
      padding: .6rem 1rem; background: #fff; color: #1c1c1e; font: 15px/1.4 system-ui, sans-serif;
      border-bottom: 1px solid #c7c7cc; box-shadow: 0 2px 8px rgb(0 0 0 / 15%); }
    p { margin: 0; font-weight: 500; }
    button { font: inherit; padding: .3rem .8rem; border-radius: 8px; cursor: pointer;
      border: 1px solid #0062cc; background: #fff; color: #0062cc; }
    button:focus-visible { outline: 3px solid #0062cc; outline-offset: 2px; }
    @media (prefers-color-scheme: dark) {
      section { background: #1c1c1e; color: #f2f2f7; border-color: #48484a; }
      button { background: #2c2c2e; color: #7ab8ff; border-color: #7ab8ff; }
      button:focus-visible { outline-color: #7ab8ff; }
    }`;
  let host = null;
  let shownKind = null;

  const hide = () => {
    host?.remove();
    host = null;
    shownKind = null;
  };

  // A click that the page has made up is not the user's.
  const button = (text, type) => {
    const made = document.createElement("button");
    made.textContent = text;
    made.addEventListener("click", (event) => {
      if (!event.isTrusted) return;
      hide();
      if (type !== null) void chrome.runtime.sendMessage({ type });
    });
    return made;
  };

  globalThis.tarneCompanionStrip = {
    hide,
    /** `kind` is "doubt" (two buttons) or "notice" (one that takes it away). */
    show({ kind, texts }) {
      if (shownKind === kind && host.isConnected) return;
      hide();
      shownKind = kind;
      host = document.createElement("div");
      host.style.setProperty("all", "initial", "important");
      const root = host.attachShadow({ mode: "closed" });
      const sheet = document.createElement("style");
      sheet.textContent = style;
      const section = document.createElement("section");
      section.setAttribute("role", "region");
      section.setAttribute("aria-label", texts.label);
      const question = document.createElement("p");
      question.setAttribute("role", "status");
      section.append(question);
      if (kind === "doubt") {
        section.append(button(texts.yes, "page/onTask"), button(texts.no, "page/offTask"));
      } else {
        section.append(button(texts.dismiss, null));
      }
      root.append(sheet, section);
      // First in the page, so that a keyboard comes to it first.
      document.documentElement.prepend(host);
      // A screen reader says what changes in a region that is there already.
      question.textContent = texts.question;
    },
  };
})();
