// Looked up in every frame of a page: what it is called, and whether it takes secrets. The value of
// this script goes to the background. It needs roots.js.
(() => {
  const secrets = "input[type=password], [autocomplete*='cc-' i]";
  const described = document.querySelector("meta[name=description i]")
    ?? document.querySelector("meta[property='og:description']");
  return {
    address: location.href,
    title: document.title.slice(0, 5000),
    description: (described?.content ?? "").slice(0, 5000),
    isSensitive: globalThis.tarneCompanionRoots().some((root) => root.querySelector(secrets) !== null),
  };
})();
