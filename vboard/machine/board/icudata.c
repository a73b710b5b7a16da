// SPDX-License-Identifier: Apache-2.0
// A library of conversion tables without a table. The archive reader's XML support names the real one, of 30
// MB; nothing on the board reads XML or converts texts.
extern const unsigned char icudt72_dat[16];
const unsigned char icudt72_dat[16] = {16, 0, 0xda, 0x27};
