// Covers a page that must not be left: a modal dialog in a closed shadow root, which the page's own
// script and style cannot reach. Runs in the extension's world of the page; `show` and `hide` are
// called by the background.
(() => {
  if (globalThis.tarneCompanionCover) return;

  const style = `
    dialog { all: revert; position: fixed; inset: 0; margin: 0; padding: 0; border: 0;
      width: 100vw; height: 100vh; max-width: none; max-height: none; display: grid; place-items: center;
      background: #f2f2f7; color: #1c1c1e; font: 16px/1.5 system-ui, sans-serif; overflow: auto; }
    dialog::backdrop { background: #f2f2f7; }
    section { max-width: 34rem; padding: 2rem; }
    h1 { font-size: 1.5rem; margin: 0 0 1rem; }
    p { margin: 0 0 1rem; overflow-wrap: anywhere; }
    .label { color: #5b5b60; margin: 0; }
    .goals { font-weight: 600; }
    .buttons { display: flex; flex-wrap: wrap; gap: .75rem; }
    button { font: inherit; font-weight: 500; padding: .6rem 1rem; border-radius: 8px; cursor: pointer;
      border: 1px solid #0062cc; background: #fff; color: #0062cc; }
    button.main { background: #0062cc; color: #fff; }
    button:focus-visible { outline: 3px solid #0062cc; outline-offset: 2px; }
    @media (prefers-color-scheme: dark) {
      dialog, dialog::backdrop { background: #161618; color: #f2f2f7; }
      .label { color: #aeaeb2; }
      button { background: #2c2c2e; color: #7ab8ff; border-color: #7ab8ff; }
      button.main { background: #0a6ed1; color: #fff; border-color: #0a6ed1; }
      button:focus-visible { outline-color: #7ab8ff; }
    }`;
  let host = null;

  const element = (name, className, text) => {
    const made = document.createElement(name);
    made.className = className;
    made.textContent = text;
    return made;
  };

  // A click that the page has made up is not the user's.
  const button = (className, text, type) => {
    const made = element("button", className, text);
    made.addEventListener("click", (event) => {
      if (event.isTrusted) void chrome.runtime.sendMessage({ type });
    });
    return made;
  };

  const makeDialog = (texts) => {
    const dialog = document.createElement("dialog");
    dialog.setAttribute("closedby", "none");
    dialog.setAttribute("aria-labelledby", "heading");
    dialog.setAttribute("aria-describedby", "explanation");
    const section = document.createElement("section");
    const heading = element("h1", "", texts.heading);
    heading.id = "heading";
    const explanation = element("p", "", texts.explanation);
    explanation.id = "explanation";
    section.append(heading, element("p", "label", texts.goalsLabel), element("p", "goals", texts.goals));
    if (texts.reason !== "") section.append(element("p", "", texts.reason));
    const buttons = element("div", "buttons", "");
    buttons.append(button("main", texts.leave, "page/leave"));
    if (texts.onTask !== "") buttons.append(button("", texts.onTask, "page/onTask"));
    section.append(explanation, buttons);
    dialog.append(section);
    dialog.addEventListener("cancel", (event) => event.preventDefault());
    return dialog;
  };

  globalThis.tarneCompanionCover = {
    show({ texts }) {
      this.hide();
      host = document.createElement("div");
      host.style.setProperty("all", "initial", "important");
      const root = host.attachShadow({ mode: "closed" });
      const dialog = makeDialog(texts);
      root.append(element("style", "", style), dialog);
      // Keys that are pressed in here are no shortcuts of the page.
      for (const type of ["keydown", "keypress", "keyup"]) {
        root.addEventListener(type, (event) => event.stopPropagation());
      }
      document.documentElement.append(host);
      dialog.showModal();
      // Escape closes a dialog at the second time, whatever its page says.
      dialog.addEventListener("close", () => host?.isConnected && dialog.showModal());
    },
    hide() {
      host?.remove();
      host = null;
    },
  };
})();
