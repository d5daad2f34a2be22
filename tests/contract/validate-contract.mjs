// Validates the OpenAPI document with an OpenAPI 3.1 validator, then every
// record body against its record's schema in that document.
//   node validate-contract.mjs <document.json> <bodies.json>
// Exits 1 on the first kind of failure, printing every error found.
import { readFileSync } from "node:fs";
import { Validator } from "@seriousme/openapi-schema-validator";
import Ajv2020 from "ajv/dist/2020.js";
import addFormats from "ajv-formats";

const [documentFile, bodiesFile] = process.argv.slice(2);
const document = JSON.parse(readFileSync(documentFile, "utf8"));
const bodies = JSON.parse(readFileSync(bodiesFile, "utf8"));

const validator = new Validator();
const verdict = await validator.validate(document);
if (!verdict.valid) {
    console.error("The document is no valid OpenAPI " + validator.version + " document:");
    console.error(JSON.stringify(verdict.errors, null, 2));
    process.exit(1);
}
console.log("valid OpenAPI " + validator.version + " document: " +
            Object.keys(document.paths).length + " operations, " +
            Object.keys(document.components.schemas).length + " schemas");

// The schemas reach each other by "#/components/schemas/..."; validating
// against a reference into the whole document resolves them.
const ajv = new Ajv2020({ strict: false, allErrors: true });
addFormats(ajv);
ajv.addSchema({ ...document, $id: "vesk:contract" });
let failures = 0;
let checked = 0;
for (const [name, sample] of Object.entries(bodies)) {
    if (!(name in document.components.schemas)) {
        console.error(`${name}: no schema in the document`);
        ++failures;
        continue;
    }
    const validate = ajv.getSchema(`vesk:contract#/components/schemas/${name}`);
    for (const [which, body] of Object.entries(sample)) {
        ++checked;
        if (!validate(body)) {
            console.error(`${name} (${which} body): ` + ajv.errorsText(validate.errors));
            ++failures;
        }
    }
}
if (failures > 0) {
    console.error(`${failures} of ${checked} bodies do not conform`);
    process.exit(1);
}
console.log(`${checked} bodies conform`);
