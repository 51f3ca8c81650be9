// Whether a page can be looked at: at once where it is a single document, else when its frames are
// there, as a field for a card mostly lies in one. A frame that never comes is waited for a little.
(() => {
  const patience = 1500;
  if (document.readyState === "loading") return false;
  if (document.readyState === "complete" || document.querySelector("iframe, frame") === null) return true;
  return new Promise((resolve) => {
    addEventListener("load", () => resolve(true), { once: true });
    setTimeout(resolve, patience, true);
  });
})();
