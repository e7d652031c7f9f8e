s/| !\[\]([^)]*) | /| | /g
s|\[the gallery\](gallery.md)|the gallery of libzeldlglib-dev|g
