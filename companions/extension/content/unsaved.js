// Looked up in every frame of a page that is about to be left: whether it holds input of the user.
// The value of this script goes to the background. It needs roots.js.
(() => {
  // Some pages make all that is typed the default of its field at once. The browser knows which fields
  // the user has changed, but says it only when the focus has left them.
  const isTyped = (field) => field.value !== "" && (field.getRootNode().activeElement === field
    || field.matches(":user-valid, :user-invalid"));
  const isChangedText = (field) => field.value !== field.defaultValue || isTyped(field);
  const isChangedInput = (input) => {
    if (["hidden", "button", "submit", "reset", "image"].includes(input.type)) return false;
    if (["checkbox", "radio"].includes(input.type)) return input.checked !== input.defaultChecked;
    // These two have a value of their own where the page gives none.
    if (["range", "color"].includes(input.type) && !input.hasAttribute("value")) return false;
    return isChangedText(input);
  };
  const isChangedSelect = (select) => {
    const options = [...select.options];
    const defaults = options.filter((option) => option.defaultSelected);
    // Without a default a list shows its first option.
    if (!select.multiple && defaults.length === 0) return select.selectedIndex > 0;
    return select.multiple ? options.some((option) => option.selected !== option.defaultSelected)
      : select.selectedOptions[0] !== defaults.at(-1);
  };
  // Nobody has kept what it was, so all text that can be edited counts as edited.
  const hasEditableText = (element) => element.isContentEditable && element.textContent.trim() !== "";

  const holds = (root, selector, test) => [...root.querySelectorAll(selector)].some(test);
  return globalThis.tarneCompanionRoots().some((root) => holds(root, "input", isChangedInput)
    || holds(root, "textarea", isChangedText)
    || holds(root, "select", isChangedSelect)
    || holds(root, "[contenteditable]", hasEditableText))
    || (document.designMode === "on" && (document.body?.textContent ?? "").trim() !== "");
})();
