"""The gallery: a picture of every dialog in every state worth showing. See script/gallery."""
