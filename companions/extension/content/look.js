// Looked up in every frame of a page: what it is called, and whether it takes secrets. The value of
// this script goes to the background.
(() => {
  const roots = [document];
  for (let index = 0; index < roots.length; index += 1) {
    for (const element of roots[index].querySelectorAll("*")) {
      if (element.shadowRoot) roots.push(element.shadowRoot);
    }
  }
  const secrets = "input[type=password], [autocomplete*='cc-' i]";
  const described = document.querySelector("meta[name=description i]")
    ?? document.querySelector("meta[property='og:description']");
  return {
    address: location.href,
    title: document.title.slice(0, 5000),
    description: (described?.content ?? "").slice(0, 5000),
    isSensitive: roots.some((root) => root.querySelector(secrets) !== null),
  };
})();
