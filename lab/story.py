"""The story of a packet that went missing."""
from captures import read


def story(capture, card, switch):
    """Of the last one that came to the card and did not leave it, or else of the last one that nobody answered."""
    last, counts = {}, {}
    for values in capture.frames_seen():
        if seen := read(values):
            last[seen.to, seen.way] = seen, int(values["frame.number"])
            counts[seen.to, seen.way] = counts.get((seen.to, seen.way), 0) + 1
    for to in ("B", "A"):
        arrived, left = counts.get((to, "in"), 0), counts.get((to, "out"), 0)
        if arrived > left:
            seen, number = last[to, "in"]
            return [f"of {arrived} packets to {to} that came to the card {left} left; of the last one, which came {seen}, the "
                    "card tells:", card.story(seen.port, capture.frame(number))]
    if ("B", "out") in last and ("A", "in") not in last:
        seen, number = last["B", "out"]
        return [f"nothing came back from B; of the last packet, which went {seen}, {switch.name} tells:",
                switch.story(seen.port, capture.frame(number))]
    return ["no packet went missing in the card" if last else "no packet of A's came to the card"]
