// Whether a page can be looked at: once it has come, with its frames, and nothing was added to it for a
// moment. A field for a card mostly lies in a frame, and a script may add one for a password. A page that
// does not come to rest is looked at after a little all the same.
(() => {
  const patience = 1500;
  const rest = 300;
  if (document.readyState === "loading") return false;
  return new Promise((resolve) => {
    let timer;
    const restart = () => {
      clearTimeout(timer);
      if (document.readyState === "complete") timer = setTimeout(end, rest);
    };
    const observer = new MutationObserver(restart);
    const end = () => {
      observer.disconnect();
      resolve(true);
    };
    observer.observe(document, { childList: true, subtree: true });
    addEventListener("load", restart, { once: true });
    setTimeout(end, patience);
    restart();
  });
})();
