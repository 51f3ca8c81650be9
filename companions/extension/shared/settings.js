// What the user has chosen, as it lies in the browser's lasting storage.

import { levels } from "./disclosure.js";
import { listFrom } from "./siteList.js";

/** Settings from whatever the storage holds. Without a whole consent nothing is ever asked. */
export function settingsFrom(stored) {
  return {
    consent: levels.includes(stored?.consent) ? stored.consent : null,
    allowList: listFrom(stored?.allowList),
    blockList: listFrom(stored?.blockList),
  };
}
