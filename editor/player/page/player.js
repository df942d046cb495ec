// Runs one movie and tells the window about it. The window reads the console: what starts with its secret is meant for it.
"use strict";

const player = (() => {
    const flushDelay = 50; // ms
    const mostLines = 2000, longestLine = 4000; // between two flushes: a movie that traces without end must not fill the memory
    let secret = "", api = null, isPaused = false; // the API from when the movie is there
    let lines = [], dropped = 0, timer = 0;

    // The emulator counts time and draws in animation frames. While they are held none comes but those of a step, which
    // are as long as it says.
    const frames = (() => {
        const ask = window.requestAnimationFrame.bind(window), leave = window.cancelAnimationFrame.bind(window);
        const waiting = new Map();
        let isHeld = false, told = 0, late = 0; // the time that the emulator knows, and how far it is behind
        let steps = [], afterSteps = null;
        function arrive(id, callback, time) {
            if (!isHeld) {
                callback(told = Math.max(told, time - late));
            } else if (steps.length === 0) {
                waiting.set(id, callback);
            } else {
                callback(told += steps.shift());
                if (steps.length === 0)
                    afterSteps();
            }
        }
        function request(callback) {
            const id = ask((time) => arrive(id, callback, time));
            return id;
        }
        function askAgain() {
            const due = [...waiting.values()];
            waiting.clear();
            due.forEach(request);
        }
        window.requestAnimationFrame = request;
        window.cancelAnimationFrame = (id) => waiting.delete(id) || leave(id);
        return {
            hold() { isHeld = true; },
            release() {
                isHeld = false;
                steps = [];
                late = performance.now() - told;
                askAgain();
            },
            step(length, after) {
                steps.push(0, length); // the emulator counts from the first one
                afterSteps = after;
                askAgain();
            },
        };
    })();

    const tell = (kind, value) => console.info(secret + JSON.stringify([kind, value]));

    // The engine does not let `fetch` use the scheme that serves these files.
    window.fetch = (resource) => new Promise((resolve, reject) => {
        const url = typeof resource === "object" && resource.url ? resource.url : String(resource);
        const request = new XMLHttpRequest();
        request.open("GET", url);
        request.responseType = "arraybuffer";
        request.onload = () => {
            const type = request.getResponseHeader("Content-Type") ||
                (request.responseURL.endsWith(".wasm") ? "application/wasm" : "application/octet-stream");
            resolve(new Response(request.response, { headers: { "Content-Type": type } }));
        };
        request.onerror = () => reject(new TypeError(url + " cannot be read"));
        request.send();
    });

    window.RufflePlayer = {
        config: {
            publicPath: "ruffle/", polyfills: false, autoplay: "on", unmuteOverlay: "hidden", splashScreen: false,
            contextMenu: "on", showSwfDownload: false, warnOnUnsupportedContent: false,
            allowScriptAccess: false, allowNetworking: "none", openUrlMode: "deny", upgradeToHttps: false,
            allowFullscreen: false, logLevel: "error",
        },
    };

    function flush() {
        timer = 0;
        if (dropped > 0)
            lines.push("(" + dropped + " more lines)");
        const told = lines;
        lines = [];
        dropped = 0;
        tell("trace", told);
    }

    function trace(line) {
        if (lines.length < mostLines)
            lines.push(String(line).slice(0, longestLine));
        else
            ++dropped;
        if (timer === 0)
            timer = setTimeout(flush, flushDelay);
    }

    // How to set up a browser helps nobody here; the button would hide what a movie that pauses shows.
    function hideExtras(element) {
        const style = document.createElement("style");
        style.textContent = "#hardware-acceleration-modal, #play-button { display: none !important }";
        element.shadowRoot.append(style);
    }

    async function start(given, letterbox) {
        secret = given;
        try {
            const movie = await (await fetch("movie.swf")).arrayBuffer();
            const element = window.RufflePlayer.newest().createPlayer();
            document.body.append(element);
            hideExtras(element);
            const ruffle = element.ruffle();
            await ruffle.load({ data: new Uint8Array(movie), letterbox });
            ruffle.traceObserver = trace;
            api = ruffle;
            if (isPaused)
                hold();
            element.focus();
            tell("loaded", api.metadata ? api.metadata.numFrames : 0);
        } catch (error) {
            tell("failed", String(error && error.message || error));
        }
    }

    function hold() {
        frames.hold();
        api.suspend();
    }

    function pause(isAsked) {
        isPaused = isAsked;
        if (api === null)
            return;
        if (isPaused) {
            hold();
        } else {
            api.resume();
            frames.release();
        }
    }

    // One frame further, while it is paused.
    function step() {
        if (api === null || !isPaused)
            return;
        api.resume();
        frames.step(1000 / (api.metadata && api.metadata.frameRate || 12), () => {
            if (isPaused)
                api.suspend();
        });
    }

    return { start, pause, step };
})();
