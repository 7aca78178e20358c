// In Firefox pages cannot speak to an extension. This part of it is in the pages of the listed sites, and
// hands on what a page says to it; it looks at nothing else there.
'use strict';

addEventListener('message', ({ source, data, ports: [page] }) => {
  if (source !== window || data !== chrome.runtime.id || !page) return;
  const extension = chrome.runtime.connect();
  const end = (answer) => {
    removeEventListener('pagehide', leave);
    extension.disconnect();
    page.postMessage({ answer });
  };
  const leave = () => end(null); // the browser would keep the page with its port
  addEventListener('pagehide', leave);
  extension.onMessage.addListener((answer) => end(answer));
  extension.onDisconnect.addListener(() => end(null));
  page.onmessage = ({ data: request }) => extension.postMessage(request);
  page.postMessage({}); // it is here
});
