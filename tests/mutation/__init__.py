"""Changes a constant or a text of the library and sees whether a test notices: script/mutate."""
