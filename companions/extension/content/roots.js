// All the trees of a frame in which an element may lie: its document and each shadow root below, those
// included that are closed to the page. Comes before the scripts that look something up.
globalThis.tarneCompanionRoots ??= () => {
  const inside = (element) => globalThis.chrome?.dom?.openOrClosedShadowRoot?.(element)
    ?? element.openOrClosedShadowRoot ?? element.shadowRoot;
  const roots = [document];
  for (let index = 0; index < roots.length; index += 1) {
    for (const element of roots[index].querySelectorAll("*")) {
      const root = element instanceof HTMLElement ? inside(element) : null;
      if (root) roots.push(root);
    }
  }
  return roots;
};
