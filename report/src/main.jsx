import { render } from 'preact';
import { Model } from './data/model.js';
import { App } from './view/App.jsx';

const page = document.getElementById('page');
page.replaceChildren();
const element = document.getElementById('data');
const model = new Model(JSON.parse(element.textContent));
// The text would take as much memory again as what was made of it.
element.remove();
render(<App model={model} />, page);
