import { render } from 'preact';
import { Model } from './data/model.js';
import { App } from './view/App.jsx';

const element = document.getElementById('data');
const model = new Model(JSON.parse(element.textContent));
// The text would take as much memory again as what was made of it.
element.remove();
const page = document.getElementById('page');
page.replaceChildren();
render(<App model={model} />, page);
