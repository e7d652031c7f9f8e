"""Hosts that leave, and displays that leave them, at every moment there is: see script/life.

`plan` draws the cases from a seed, `process` runs one host and says what became of it, and
`exits`, `deaths`, `fairness` and `allocations` play a case each; `report` counts.
"""
