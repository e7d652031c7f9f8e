s|\[`zeldlg.h`\](../include/zeldlg/zeldlg.h)|`/usr/include/zeldlg/zeldlg.h`|g
s|\[`examples/`\](../examples)|`/usr/share/doc/libzeldlglib-dev/examples`|g
s|\[`examples/pkcs11/`\](../examples/pkcs11)|`/usr/share/doc/libzeldlglib-dev/examples/pkcs11`|g
s|](../packaging/registry)|](/usr/share/tessaly/registry)|g
s|\[`examples/pkcs11`\](../examples/pkcs11)|`/usr/share/doc/libzeldlglib-dev/examples/pkcs11`|g
