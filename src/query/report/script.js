"use strict";
(() => {
    const form = document.querySelector("form");
    const fields = ["q", "event", "log", "band"].map((id) => document.getElementById(id));
    const [search, eventField, logField, bandField] = fields;
    const count = document.getElementById("count");
    const bands = Array.from(document.querySelectorAll(".list tbody tr"));
    const rows = Array.from(document.querySelectorAll("#rows tbody tr"), (row) => {
        const cells = Array.from(row.cells, (cell) => cell.textContent);
        const [log, line] = row.id.slice(1).split("-").map(Number);
        const detail = row.querySelector("summary").textContent;
        const text = [cells[0], cells[1], cells[2], detail].join("\n").toLowerCase();
        return { row, log, line, label: cells[1], name: cells[2], text };
    });

    const addOption = (field, value, text) => field.add(new Option(text, value));
    const fillOptions = () => {
        const names = new Map();
        const logs = new Map();
        for (const { name, log, label } of rows) {
            names.set(name, (names.get(name) || 0) + 1);
            logs.set(log, label);
        }
        for (const name of Array.from(names.keys()).sort()) {
            addOption(eventField, name, `${name} (${names.get(name)})`);
        }
        for (const [log, label] of Array.from(logs).sort((a, b) => a[0] - b[0])) {
            addOption(logField, String(log), label);
        }
        logField.parentElement.hidden = logs.size < 2;
        bands.forEach((band, i) => {
            const [state, since, , length] = Array.from(band.cells, (cell) => cell.textContent);
            const log = logs.size < 2 ? "" : ` ${band.cells[7].textContent}`;
            addOption(bandField, String(i + 1), `${state.trim()} ${since}, ${length}${log}`);
        });
    };

    // Rows beyond a few screens follow a little later, so that typing is not held up.
    let runs = 0;
    const showLater = (later, run) => {
        if (run === runs && later.length > 0) {
            later.splice(0, 2000).forEach((row) => (row.hidden = false));
            setTimeout(showLater, 0, later, run);
        }
    };
    const apply = () => {
        const later = [];
        const words = search.value.toLowerCase().split(/\s+/).filter(Boolean);
        const band = bandField.value ? bands[bandField.value - 1].dataset : null;
        let shown = 0;
        for (const one of rows) {
            const isShown =
                (!eventField.value || one.name === eventField.value) &&
                (!logField.value || one.log === Number(logField.value)) &&
                (!band ||
                    (one.row.id.startsWith(band.id) &&
                        one.line >= Number(band.from) &&
                        one.line <= Number(band.to))) &&
                words.every((word) => one.text.includes(word));
            if (isShown && shown > 200 && one.row.hidden) {
                later.push(one.row);
            } else if (one.row.hidden === isShown) {
                one.row.hidden = !isShown;
            }
            shown += isShown ? 1 : 0;
        }
        setTimeout(showLater, 0, later, ++runs);
        count.textContent = `${shown} of ${rows.length} shown`;
    };

    const writeAddress = () => {
        const given = fields.filter((field) => field.value).map((field) => [field.id, field.value]);
        const address = location.href.split("#")[0];
        history.replaceState(null, "", `${address}#${new URLSearchParams(given)}`);
    };

    const readAddress = () => {
        const row = document.getElementById(location.hash.slice(1));
        const parameters = new URLSearchParams(location.hash.slice(1));
        if (row && !row.hidden) {
            return;
        }
        for (const field of fields) {
            field.value = row ? "" : parameters.get(field.id) || "";
            if (field.selectedIndex === -1) {
                field.value = ""; // the address names what this page does not have
            }
        }
        apply();
        if (row) {
            row.hidden = false;
            row.scrollIntoView();
        }
    };

    const change = () => {
        apply();
        writeAddress();
    };

    fillOptions();
    form.hidden = false;
    form.addEventListener("input", change);
    form.addEventListener("change", change);
    form.addEventListener("submit", (event) => event.preventDefault());
    form.querySelector("button").addEventListener("click", () => {
        form.reset();
        change();
    });
    addEventListener("hashchange", readAddress);
    readAddress();
    apply();
})();
