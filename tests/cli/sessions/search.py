# What a list of texts of the sample survey must hold, by a plain search in its dump: the ID and the text of each answer.
import json
import sys

SEARCHES = {
    "bus": (32, 43, lambda choice, text, position: "バス" in text),
    "filled": (32, 43, lambda choice, text, position: text),
    "empty": (32, 43, lambda choice, text, position: choice == 2 and not text),
    "minutes": (7, 5, lambda choice, text, position: text.isdecimal() and 60 <= int(text) <= 90),
    "district": (8, 6, lambda choice, text, position: "301" <= text.split(":")[0] <= "399"),
    "first": (12, 10, lambda choice, text, position: position == 0),
}
question, slot, passes = SEARCHES[sys.argv[1]]
for sample in json.load(sys.stdin)["Samples"]:
    for i, choice in enumerate(sample["Answers"][question - 1]):
        text = sample["Essays"].get(str(slot + i), "")
        if passes(choice, text, i):
            print(sample["IDno"], text, sep="\t")
