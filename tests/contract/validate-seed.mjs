// Checks the emulator's seed schema: it compiles as JSON Schema 2020-12, the
// shipped seed conforms to it, and each broken seed of a table does not.
//   node validate-seed.mjs <seed.schema.json> <seed.json>
import { readFileSync } from "node:fs";
import Ajv2020 from "ajv/dist/2020.js";

const [schemaFile, seedFile] = process.argv.slice(2);
const schema = JSON.parse(readFileSync(schemaFile, "utf8"));
const seed = JSON.parse(readFileSync(seedFile, "utf8"));

const ajv = new Ajv2020({ allErrors: true, strictTypes: false });
const validate = ajv.compile(schema);
let failures = 0;
if (!validate(seed)) {
    console.error("the shipped seed does not conform:\n" + ajv.errorsText(validate.errors));
    ++failures;
}

// Each case breaks a copy of the shipped seed in one way the emulator refuses.
const broken = {
    "no store": (s) => { delete s.store; },
    "a negative price": (s) => { s.items[0].price = -1; },
    "a misspelt item key": (s) => { s.items[0].prise = s.items[0].price; },
    "an empty barcode": (s) => { s.items[0].barcode = ""; },
    "a fractional shop number": (s) => { s.store.shopNum = 1.5; },
    "an unknown promotion kind": (s) => { s.promotions[0].kind = "coupon"; },
    "a set without barcodes": (s) => { s.promotions[2].barcodes = []; },
    "a card promotion with barcodes": (s) => { s.promotions[0].barcodes = ["1"]; },
    "an accrual over 100 percent": (s) => { s.cards[0].accrualPercent = 101; },
    "a PIN flag that is text": (s) => { s.cards[0].pinRequired = "yes"; },
    "a ticket entry that is no date": (s) => { s.parking.tickets[0].entry = "yesterday"; },
    "more free hours than a day has": (s) => { s.parking.rules[0].freeHours = 25; },
};
for (const [name, breakIt] of Object.entries(broken)) {
    const copy = structuredClone(seed);
    breakIt(copy);
    if (validate(copy)) {
        console.error(`a seed with ${name} conforms`);
        ++failures;
    }
}
if (failures > 0)
    process.exit(1);
console.log(`seed schema: the shipped seed conforms, ${Object.keys(broken).length} broken seeds do not`);
