// For a page that reads cards: <script src="read-card.js"></script>, and then
//
//   const card = await readCard({ include: ['photo', 'pictures'], timeout: 10 });
//
// `card` is what "idcard-reader read --json" prints. A failure is thrown as a CardError, with a name
// for the page and a headline and a remedy for the user, in the page's language.
'use strict';

class CardError extends Error {
  constructor({ name, headline, cause, remedy }) {
    super(headline);
    Object.assign(this, { name, headline, cause, remedy });
  }
}

function readCard({ include = [], timeout = 10 } = {}) {
  const extension = '@IDCARD_EXTENSION_ID@';
  const language = document.documentElement.lang || navigator.language;
  const missing = language.toLowerCase().startsWith('zh')
    ? { headline: '此浏览器中没有读卡扩展程序，或此网站不得使用该扩展程序。',
      remedy: '请管理员用 idcard-browser-setup 允许此网站。' }
    : { headline: 'This browser has no extension that reads cards, or this site may not use it.',
      remedy: 'Ask the administrator to allow the site with idcard-browser-setup.' };

  return new Promise((resolve, reject) => {
    const fail = (error) => reject(new CardError(error));
    const failForWantOfExtension = () =>
      fail({ name: 'BROWSER_EXTENSION_MISSING', cause: missing.headline, ...missing });
    if (!globalThis.chrome?.runtime?.connect) {
      failForWantOfExtension();
      return;
    }
    const port = chrome.runtime.connect(extension);
    port.onDisconnect.addListener(failForWantOfExtension);
    port.onMessage.addListener((answer) => {
      port.disconnect();
      if (answer.kind) resolve(answer); // a photo that was not decoded is its member "error"
      else fail(answer.error);
    });
    port.postMessage({ include, timeout, language });
  });
}
