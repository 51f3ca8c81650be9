// What the welcome page offers for the block list. All of it is shown before anything is added.

export const suggestedSites = {
  social: ["bsky.app", "facebook.com", "instagram.com", "linkedin.com", "mastodon.social",
    "pinterest.com", "reddit.com", "threads.net", "tiktok.com", "tumblr.com", "x.com"],
  video: ["dailymotion.com", "disneyplus.com", "hulu.com", "netflix.com", "primevideo.com",
    "twitch.tv", "vimeo.com", "youtube.com"],
  news: ["bbc.co.uk", "bbc.com", "bild.de", "cnn.com", "elpais.com", "foxnews.com", "lemonde.fr",
    "news.ycombinator.com", "nytimes.com", "spiegel.de", "theguardian.com", "washingtonpost.com"],
};
