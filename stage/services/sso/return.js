'use strict';

document.getElementById('form').submit();
