// How a tab came to its page.

/**
 * Whether leaving the page could lose what a form has sent: a browser does not tell the method of a
 * request that is over, so every page that answers a form counts, and its reloads.
 */
export function isReachedByForm(previous, { address, transition }) {
  if (transition === "form_submit") return true;
  const isAgain = transition === "reload" || transition === "auto_toplevel";
  return isAgain && previous?.address === address && previous.isByForm === true;
}
