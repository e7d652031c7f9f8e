"""The soak: a random host and user, played against the library and checked against a model.

`plan` draws the calls of a host and the acts of its user from a seed, `model` (with `dialogs` and
`policy`) says what must come of them, `player` plays them on the stage and compares, and
`resources` sees that nothing is left behind. Nothing in the plan depends on time: the same seed
gives the same calls with the same acts.
"""
