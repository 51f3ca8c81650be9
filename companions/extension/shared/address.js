// Which page an address means, and whether that page may be judged at all.

const privateSuffixes = [".local", ".internal", ".localhost", ".home.arpa"];

/** The address as a URL if it is one of the web, else null. */
export function webAddress(address) {
  let url;
  try {
    url = new URL(address);
  } catch {
    return null;
  }
  return url.protocol === "http:" || url.protocol === "https:" ? url : null;
}

/**
 * The page's identity inside the browser: its address with the query and without fragment, user and
 * password. One lecture on a video site must not free every video, so the query is part of it. Null
 * for what is no page of the web.
 */
export function identityOf(address) {
  const url = webAddress(address);
  if (url === null) return null;
  url.hash = "";
  url.username = "";
  url.password = "";
  return url.href;
}

/** The site that a person means by this address: its host without "www." and without port. */
export function siteOf(address) {
  const url = webAddress(address);
  return url === null ? null : withoutWww(url.hostname);
}

export function withoutWww(host) {
  return host.startsWith("www.") && host.split(".").length > 2 ? host.slice(4) : host;
}

/** False for addresses of this machine and of private networks: nobody else is told about them. */
export function isPublic(address) {
  const url = webAddress(address);
  if (url === null) return false;
  const host = url.hostname.replace(/\.$/, "");
  if (host.startsWith("[")) return !isPrivateIPv6(host.slice(1, -1));
  if (/^\d+\.\d+\.\d+\.\d+$/.test(host)) return !isPrivateIPv4(host.split(".").map(Number));
  // A name without a dot is of this machine or of the local network.
  return host.includes(".") && !privateSuffixes.some((suffix) => host.endsWith(suffix));
}

function isPrivateIPv4([first, second]) {
  return first === 0 || first === 10 || first === 127 || first >= 224
    || (first === 100 && second >= 64 && second <= 127)
    || (first === 169 && second === 254)
    || (first === 172 && second >= 16 && second <= 31)
    || (first === 192 && second === 168);
}

// The browser's own parser has brought the address to its short form, with hexadecimal groups only.
function isPrivateIPv6(host) {
  const mapped = /^::(?:ffff:)?([0-9a-f]{1,4}):([0-9a-f]{1,4})$/.exec(host);
  if (mapped) {
    const [high, low] = [parseInt(mapped[1], 16), parseInt(mapped[2], 16)];
    return isPrivateIPv4([high >> 8, high & 255, low >> 8, low & 255]);
  }
  // Unspecified, loopback and what is mapped in other ways; unique local; link local; multicast.
  return host.startsWith("::") || /^f[cd]/.test(host) || /^fe[89ab]/.test(host)
    || host.startsWith("ff");
}
