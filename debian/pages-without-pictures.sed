s/| !\[\]([^)]*) | /| | /g
s|\[the gallery\](gallery.md)|the gallery of libzeldlglib-dev|g
s|\[hosts.md\](hosts.md)|the page of hosts of libzeldlglib-dev|g
