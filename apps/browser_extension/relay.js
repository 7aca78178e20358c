// In Firefox pages cannot speak to an extension. This part of it is in the pages of the listed sites, and
// hands on what a page says to it; it looks at nothing else there.
'use strict';

addEventListener('message', ({ source, data, ports: [page] }) => {
  if (source !== window || data !== chrome.runtime.id || !page) return;
  const extension = chrome.runtime.connect();
  extension.onMessage.addListener((answer) => {
    extension.disconnect();
    page.postMessage({ answer });
  });
  extension.onDisconnect.addListener(() => page.postMessage({ answer: null }));
  page.onmessage = ({ data: request }) => extension.postMessage(request);
  page.postMessage({}); // it is here
});
